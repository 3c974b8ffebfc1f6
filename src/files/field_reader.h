#pragma once
// Reads a text file one comma-separated field at a time, the way the log format is
// read: blanks ahead of a field are skipped; a field in double quotes ends at the
// next quote and the rest of its line up to a comma is dropped; any other field ends
// at a comma or at the line end. The file is read in chunks, never whole.
#include <QFile>
#include <string>

namespace fm {

class FieldReader {
public:
    explicit FieldReader(QFile &file) : file_(file) {}
    // False at the end of the file, before any field.
    bool Next(std::string &field);
    // Bytes not read yet, for a bound on what the rest of the file can hold.
    qint64 Remaining() const { return file_.size() - file_.pos() + (end_ - pos_); }

private:
    int Peek();
    int Get();
    bool Fill();
    QFile &file_;
    std::string buffer_;
    size_t pos_ = 0, end_ = 0;
};

} // namespace fm
