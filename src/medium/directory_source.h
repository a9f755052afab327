// A medium that lies in a directory, such as a mounted disc. Links are told and never followed.
#pragma once

#include <memory>
#include <vector>

#include "medium/medium_source.h"

namespace quillon {

class DirectorySource final : public MediumSource {
 public:
  // An existing directory, as its user names it: this path alone may lead through links.
  explicit DirectorySource(TextView directory);

  [[nodiscard]] bool List(std::vector<MediumEntry>& entries) override;
  [[nodiscard]] std::unique_ptr<MediumFile> Open(TextView path) override;

 private:
  struct Pending {
    Text path;  // below the root
    std::size_t depth;
  };
  [[nodiscard]] Text Below(TextView path) const;
  [[nodiscard]] bool ListOne(const Pending& directory, std::vector<MediumEntry>& entries,
                             std::vector<Pending>& found);
  [[nodiscard]] bool IsOwnDirectory(TextView path);

  Text root_;
  // The directory of the file that was opened last, of which is known that no link leads there.
  Text seenDirectory_;
};

}  // namespace quillon
