// What files hold, as it may be printed: names and values come from whoever made the file, and a
// terminal obeys characters that are not to be seen.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon::cli {

// Text in which a terminal finds nothing to obey and nothing turns the direction of other text:
// control characters but newline and tab become their pictures, C1 controls, also as single bytes,
// and characters that set a direction become U+FFFD. Other bytes that are no UTF-8 stay: names of
// files may have them.
std::string forTerminal(std::string_view utf8);

// The bytes of the well-formed UTF-8 sequence at the beginning of a text that is not empty; 0 when
// the first byte begins none.
std::size_t utf8SequenceBytes(std::string_view text);

// Writes "quillon: ", the sentence and a line end to standard error: all that the program says
// there goes this way. A line end within the sentence stays.
void say(std::string_view sentence);
// The same of a sentence from beside the job, below the progress that stands on the line.
void sayBelowProgress(std::string_view sentence);

}  // namespace quillon::cli
