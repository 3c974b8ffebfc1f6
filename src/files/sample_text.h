#pragma once
// The sample line of a log: each axis with two decimals and a blank ("0.00 "), then
// " 0"; a sample without data as the mark "-1 -1 -1 0", so that it reads back as one.
#include <QByteArray>
#include <QChar>

namespace fm {
class SampleWriter {
public:
    SampleWriter();
    // Appends the quoted line with CR LF.
    void Append(QByteArray &out, float x, float y, float z) const;

private:
    void Value(QByteArray &out, float v) const;
    char mark_;
};
} // namespace fm
