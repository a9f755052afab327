// What the commands print: results on standard output, sentences on standard error.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "create_job.h"
#include "json_output.h"
#include "write_job.h"

namespace quillon::cli {

// What a command prints on standard output.
class Output {
 public:
  Output() = default;  // nothing
  // For people: nothing in it commands their terminal.
  static Output forReaders(std::string_view text);
  // For programs, JSON and XML, and what a user's own stylesheet made: byte by byte.
  static Output asItIs(std::string bytes);
  static Output of(bool isJson, std::string text) {
    return isJson ? asItIs(std::move(text)) : forReaders(text);
  }

  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  explicit Output(std::string bytes) : bytes_(std::move(bytes)) {}

  std::string bytes_;
};

std::string plainText(const CreateResult& result);
// The part of that which names what was passed over.
std::string passedOverText(const CreateResult& result);
std::string plainText(const WriteResult& result);

// Add their members to a JSON object.
void addMembers(Json& object, const CreateResult& result);
void addMembers(Json& object, const FoundSet& found);
// Without the root, which a creation has named already.
void addMembers(Json& object, const WriteResult& result);

// A line end in a name must not begin a line of its own.
std::string singleLine(std::string text);

// Writes it now; that it could not be written, finish tells.
void print(const Output& output);
// Writes all of it and answers the exit status of the program.
int finish(const Output& output, const Outcome& outcome, const std::vector<std::string>& remarks);

}  // namespace quillon::cli
