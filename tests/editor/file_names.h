#pragma once

#include <string>
#include <vector>

namespace vantrel::testing {

/// Names that files may have, without an extension of `extensionBytes` bytes: with blanks, quotes,
/// what addresses and shells read as theirs, pictures made of several, right-to-left text, and as
/// long as a name can be.
inline std::vector<std::string> unusualNames(size_t extensionBytes = 4) {
  constexpr size_t kLongestName = 255;
  return {" two  blanks ",
          "“quoted” 'and' \"more\"",
          "50% of #1 & <b>a?b=c;d *[*]$(x)`y`\\z",
          "-dash",
          "👨‍👩‍👧‍👦 🏴󠁧󠁢󠁳󠁣󠁴󠁿 ❤️",
          "שלום עולם 123 مرحبا",
          "é (composed) e\u0301 (not)",
          std::string(kLongestName - extensionBytes, 'x')};
}

}  // namespace vantrel::testing
