#!/usr/bin/env python3
"""Makes the table of data elements, and the names of those that the code uses, from its source.

Source:  src/dicom/tables/data_elements.tsv (group, element, VR, VM, keyword, attribute name)
Results: src/dicom/tables/element_table.h and element_table.cpp; dicom/tags.h, which names what some
         source file says as tags::kKeyword

The same source always gives the same bytes. With --check nothing is written: the exit status is 1
when making the table again would change a file.
"""

import argparse
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLES = ROOT / "src" / "dicom" / "tables"
SOURCE = TABLES / "data_elements.tsv"
TAGS = ROOT / "src" / "dicom" / "basics" / "include" / "dicom" / "tags.h"
MADE_BY = "// Made by scripts/make_dictionary.py from data_elements.tsv: change that file instead.\n"

VRS = frozenset(
    "AE AS AT CS DA DS DT FL FD IS LO LT OB OF OW PN SH SL SQ SS ST TM UI UL UN US UT OX XL XS RT "
    "SI".split()
)

HEADER = """// The data elements that the dictionary knows, one row each, in ascending tag order.
{made_by}#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "dicom/types.h"

namespace quillon {{

// vm: n > 0 exactly n values, 0 one or more without bound, -k one to k values. Repeating groups
// stand once, with FF as the low byte of the group.
struct ElementRow {{
  DcTag tag;
  std::uint8_t vr;  // a DcVr
  std::int8_t vm;
  const char* keyword;
}};

inline constexpr std::size_t kElementCount = {count};
extern const std::array<ElementRow, kElementCount> kElementTable;
// The tags of the rows alone, so that a search touches few cache lines.
extern const std::array<DcTag, kElementCount> kElementTags;
// The standard's names of the rows ("Patient's Name"), in UTF-8, in one text: pointers to them would
// be relocated at each start. The name of row i begins at kElementNameStarts[i] and ends where the
// next one begins.
extern const char kElementNames[];
extern const std::array<std::uint32_t, kElementCount + 1> kElementNameStarts;

}}  // namespace quillon
"""

BODY_BEGIN = """{made_by}#include "element_table.h"

namespace quillon {{
namespace {{

constexpr std::uint8_t vr(DcVr value) {{ return static_cast<std::uint8_t>(value); }}
"""

BODY_ROWS = """
}}  // namespace

// clang-format off
constexpr std::array<ElementRow, kElementCount> kElementTable{{{{
{rows}
}}}};

constexpr char kElementNames[] =
{names};

constexpr std::array<std::uint32_t, kElementCount + 1> kElementNameStarts{{{{
{starts}
}}}};
// clang-format on

namespace {{

constexpr std::array<DcTag, kElementCount> tagsOfRows() {{
  std::array<DcTag, kElementCount> tags{{}};
  for (std::size_t i = 0; i < tags.size(); ++i) tags[i] = kElementTable[i].tag;
  return tags;
}}

}}  // namespace

constexpr std::array<DcTag, kElementCount> kElementTags = tagsOfRows();

namespace {{

constexpr bool tagsAscend() {{
  for (std::size_t i = 1; i < kElementTags.size(); ++i) {{
    if (kElementTags[i - 1] >= kElementTags[i]) return false;
  }}
  return true;
}}

static_assert(kElementTable.back().keyword != nullptr, "as many rows as kElementCount says");
static_assert(kElementNameStarts.back() == sizeof kElementNames - 1, "the last name ends with all");
static_assert(tagsAscend(), "rows ascend by tag, without doubles");

}}  // namespace
}}  // namespace quillon
"""

TAGS_HEADER = """// The data elements that the code names, by their keywords in the dictionary.
{made_by}#pragma once

#include "dicom/types.h"

namespace quillon::tags {{

{names}

}}  // namespace quillon::tags
"""


def read_rows(source):
    """Answers (tag, vr, vm, keyword, name) of each line; ends the program at a line that is not one."""
    rows = []
    for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), start=1):
        if not line or line.startswith("#"):
            continue
        fields = line.split("\t")
        if len(fields) != 6:
            sys.exit(f"{source}:{number}: {len(fields)} fields instead of 6")
        group, element, vr, vm, keyword, name = fields
        if not re.fullmatch("[0-9a-f]{4}", group) or not re.fullmatch("[0-9a-f]{4}", element):
            sys.exit(f"{source}:{number}: group and element are four hexadecimal digits")
        if vr not in VRS:
            sys.exit(f"{source}:{number}: unknown VR {vr}")
        if not re.fullmatch("-?[0-9]+", vm) or not -128 <= int(vm) <= 127:
            sys.exit(f"{source}:{number}: VM {vm} is no number from -128 to 127")
        if not re.fullmatch("[A-Za-z0-9]+", keyword):
            sys.exit(f"{source}:{number}: keyword {keyword} holds more than letters and digits")
        if not name or re.search(r'["\\]', name):
            sys.exit(f"{source}:{number}: the name {name} is empty or ends the text that it becomes")
        rows.append((int(group + element, 16), vr, int(vm), keyword, name))
    rows.sort()
    for before, after in zip(rows, rows[1:]):
        if before[0] == after[0]:
            sys.exit(f"{source}: tag {after[0]:08x} stands there twice")
    return rows


def used_names():
    """The names that follow tags:: in the sources."""
    return {
        name
        for folder in ("apps", "bench", "fuzz", "src", "tests")
        for path in (ROOT / folder).rglob("*")
        if path.suffix in (".cpp", ".h")
        for name in re.findall(r"\btags::(k[A-Z]\w*)", path.read_text(encoding="utf-8"))
    }


def make_tags(rows):
    """Answers dicom/tags.h; ends the program at a name that is no keyword."""
    used = used_names()
    tags = {f"k{keyword[0].upper()}{keyword[1:]}": tag for tag, _, _, keyword, _ in rows}
    if used - tags.keys():
        sys.exit("no such keyword: " + ", ".join(sorted(used - tags.keys())))
    lines = [f"inline constexpr DcTag {name} = 0x{tags[name]:08X};" for name in tags if name in used]
    return TAGS_HEADER.format(made_by=MADE_BY, names="\n".join(lines))


def make(rows):
    """Answers the files as {path: text}."""
    used = sorted({vr for _, vr, _, _, _ in rows})
    vrs = "".join(f"constexpr std::uint8_t {vr} = vr(DcVr::{vr});\n" for vr in used)
    lines = "\n".join(
        f'    {{0x{tag:08X}, {vr}, {vm}, "{keyword}"}},' for tag, vr, vm, keyword, _ in rows
    )
    names = "\n".join(f'    "{name}"' for *_, name in rows)
    starts = [0]
    for *_, name in rows:
        starts.append(starts[-1] + len(name.encode()))
    numbers = "\n".join("    " + " ".join(f"{start}," for start in starts[at : at + 16])
                        for at in range(0, len(starts), 16))
    return {
        TABLES / "element_table.h": HEADER.format(made_by=MADE_BY, count=len(rows)),
        TABLES / "element_table.cpp": BODY_BEGIN.format(made_by=MADE_BY)
        + vrs
        + BODY_ROWS.format(rows=lines, names=names, starts=numbers),
        TAGS: make_tags(rows),
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="write nothing, only compare")
    options = parser.parse_args()

    stale = []
    for path, text in make(read_rows(SOURCE)).items():
        if path.exists() and path.read_text(encoding="utf-8") == text:
            continue
        stale.append(path.name)
        if not options.check:
            path.write_text(text, encoding="utf-8", newline="\n")
    if options.check and stale:
        sys.exit("not what data_elements.tsv gives: " + ", ".join(stale))


if __name__ == "__main__":
    main()
