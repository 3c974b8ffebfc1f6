#include "files/field_reader.h"

#include <cstring>

namespace fm {
namespace {
constexpr qint64 kChunk = 1 << 20;
}

bool FieldReader::Fill() {
    buffer_.resize(size_t(kChunk));
    const qint64 n = file_.read(buffer_.data(), kChunk);
    pos_ = 0;
    end_ = n > 0 ? size_t(n) : 0;
    return end_ > 0;
}

int FieldReader::Peek() {
    if (pos_ >= end_ && !Fill()) return -1;
    return static_cast<unsigned char>(buffer_[pos_]);
}

int FieldReader::Get() {
    const int c = Peek();
    if (c >= 0) ++pos_;
    return c;
}

bool FieldReader::Next(std::string &field) {
    field.clear();
    int c = Peek();
    // Line ends left over from the previous record come first.
    while (c == '\r' || c == '\n') {
        Get();
        c = Peek();
    }
    while (c == ' ' || c == '\t') {
        Get();
        c = Peek();
    }
    if (c < 0) return false;
    if (c == '"') {
        Get();
        // Up to the closing quote a buffer at a time, not a character at a time.
        while (true) {
            if (pos_ >= end_ && !Fill()) break;
            const char *from = buffer_.data() + pos_;
            const void *quote = std::memchr(from, '"', end_ - pos_);
            const size_t len = quote ? size_t(static_cast<const char *>(quote) - from) : end_ - pos_;
            field.append(from, len);
            pos_ += len;
            if (quote) {
                ++pos_;
                break;
            }
        }
        // What follows the closing quote up to a comma or the line end is dropped.
        while ((c = Peek()) >= 0 && c != ',' && c != '\r' && c != '\n') Get();
        if (c == ',') Get();
        return true;
    }
    while ((c = Peek()) >= 0 && c != ',' && c != '\r' && c != '\n') field += char(Get());
    if (c == ',') Get();
    // Trailing blanks of an unquoted field are not part of it.
    while (!field.empty() && (field.back() == ' ' || field.back() == '\t')) field.pop_back();
    return true;
}

} // namespace fm
