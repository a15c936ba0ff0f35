#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/byte_source.h"
#include "files/text_line.h"
#include "platform/event.h"
#include "platform/limits.h"

namespace velkor {

// Lines of a byte source that end at a line feed, a carriage return followed by a line feed, or a
// carriage return alone. A last line without line end is a line; a carriage return that is the
// last byte ends the last line. Reads chunks of 10240 bytes and allocates nothing for a line.
class StkTextReader {
 public:
  // stopEvent, set, ends the reading of a line that is longer than a chunk; both outlive it.
  explicit StkTextReader(StkByteSource& source, Event* stopEvent = nullptr)
      : source_(source), stopEvent_(stopEvent) {}

  // False at the end of the data. At most size - 1 characters of the line are kept; size is at
  // most kTextBufferSize.
  bool ReadLine(TextLine& line, size_t size);
  // The source ended before its length: the line answered last may be a part of one.
  bool CutShort() const { return endOfData_ && position_ < source_.Length(); }
  // The stop event has ended the line answered last.
  bool Stopped() const { return stopped_; }
  // Bytes taken from the source for the lines answered so far.
  uint64_t Position() const { return position_; }

 private:
  // False at the end of the data.
  bool Refill();
  // The next byte of the data when it is a line feed is taken.
  void SkipLineFeed();
  bool MustStop();

  StkByteSource& source_;
  Event* const stopEvent_;
  bool stopped_ = false;
  std::array<char, 10240> buffer_;
  size_t next_ = 0;
  size_t end_ = 0;
  bool endOfData_ = false;
  uint64_t position_ = 0;
  std::array<char, kTextBufferSize> line_;
};

}  // namespace velkor
