// What the commands print: results on standard output, sentences on standard error.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "create_job.h"
#include "write_job.h"

namespace quillon::cli {

std::string plainText(const CreateResult& result);
std::string plainText(const WriteResult& result);

// Members of a JSON object, each with a comma behind it.
std::string jsonMembers(const CreateResult& result);
// Without the root, which a creation has named already.
std::string jsonMembers(const WriteResult& result);
// The members and the error, as a line.
std::string jsonObject(const std::string& members, const std::optional<std::string>& error);

// Writes all of it and answers the exit status of the program.
int finish(const std::string& output, const std::optional<std::string>& error,
           const std::vector<std::string>& remarks);

}  // namespace quillon::cli
