// Says on standard error what is wrong with a text, as FILE:LINE:COLUMN: reason.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

class Problems {
 public:
  // `name` is what the text is called in the messages.
  Problems(std::string name, std::string const& text);

  // Reports a problem with the byte at `offset`.
  void report(int offset, std::string const& reason);

  // "LINE:COLUMN" of the byte at `offset`, both counted from 1, the column in bytes.
  std::string place(int offset) const;

  bool any() const { return reported; }

 private:
  std::string fileName;
  std::vector<std::size_t> lineStarts;
  bool reported = false;
};
