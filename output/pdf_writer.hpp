// PDF object syntax for the direct PDF device: a byte buffer that knows its file offsets, fast
// number formatting, deflated streams and the cross-reference table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel {
class AtomicFile;
}

namespace quorvel::pdf {

// Appends `value` with at most `decimals` (up to 4) and no trailing zeros ("12", "0.5", "-3.125").
void AppendNumber(std::string& out, double value, int decimals = 3);
void AppendInt(std::string& out, int64_t value);
// `bytes` as a literal string, binary bytes kept, delimiters escaped.
void AppendLiteral(std::string& out, std::string_view bytes);
// The same without the parentheses, for a string written piece by piece.
void AppendEscaped(std::string& out, std::string_view bytes);
void AppendHex(std::string& out, uint32_t value, int digits);

// Writes a PDF into a whole-or-nothing file: object offsets, the xref table and the trailer.
// A failed write raises the file error from the file itself.
class ObjectWriter {
 public:
  explicit ObjectWriter(AtomicFile& file);

  // A new object number, to refer to before the object is written.
  int Reserve();
  // Starts object `number` ("n 0 obj\n"); its body goes into Body(), then End().
  std::string& Begin(int number);
  void End();
  // A whole stream object: the dictionary entries (without << >>) and the bytes.
  void Stream(int number, std::string_view dictionary, std::string_view bytes);
  // The same with the bytes deflated (/FlateDecode added to the dictionary), through one
  // buffer kept for the whole document rather than a new one per stream.
  void DeflatedStream(int number, std::string_view dictionary, std::string_view bytes);
  uint64_t Written() const { return flushed_ + buffer_.size(); }
  // The xref table and trailer; `id` is the document ID's hex digits.
  void Finish(int root, int info, const std::string& id);

 private:
  void Flush();
  AtomicFile& file_;
  std::string buffer_;
  std::string deflated_;
  uint64_t flushed_ = 0;            // bytes already handed to the stream
  std::vector<uint64_t> offsets_;   // per object number, 0 until written (object 0 is free)
};

}  // namespace quorvel::pdf
