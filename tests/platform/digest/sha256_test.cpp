#include "platform/sha256.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quillon {
namespace {

TEST(Sha256, ThePublishedSumsOfItsStandardInPiecesOfAnySize) {
  struct Row {
    std::string bytes;
    const char* sum;
  };
  const Row rows[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
  };
  Sha256 digest;  // one for all: each Finish is a new beginning
  for (const Row& row : rows) {
    for (const std::size_t pieceBytes : {1U, 63U, 64U, 1048576U}) {
      SCOPED_TRACE(std::to_string(row.bytes.size()) + " in pieces of " +
                   std::to_string(pieceBytes));
      for (std::size_t at = 0; at < row.bytes.size(); at += pieceBytes) {
        digest.Update(row.bytes.data() + at, std::min(pieceBytes, row.bytes.size() - at));
      }
      EXPECT_EQ(digest.Finish(), row.sum);
    }
  }
}

}  // namespace
}  // namespace quillon
