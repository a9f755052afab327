#include "pages/readme_text.h"

#include <array>
#include <string_view>

#include "software.h"

namespace quillon {

namespace {

constexpr std::size_t kMostLineChars = 80;
constexpr std::string_view kIndent = "  ";

// U+00C0 to U+00FF without what stands above and below the letters.
constexpr std::string_view kLatinLetters =
    "AAAAAAACEEEEIIIIDNOOOOOxOUUUUYTsaaaaaaaceeeeiiiidnooooo/ouuuuyty";
static_assert(kLatinLetters.size() == 64);

// What is no ASCII and none of those is left out with a question mark for it.
std::string Ascii(TextView text) {
  std::string ascii;
  for (const OLECHAR unit : text) {
    if (unit >= 0x20 && unit < 0x7F) {
      ascii += static_cast<char>(unit);
    } else if (unit >= 0xC0 && unit <= 0xFF) {
      ascii += kLatinLetters[unit - 0xC0];
    } else if (unit < 0x20 || unit == 0xA0) {
      ascii += ' ';
    } else if (unit < 0xDC00 || unit > 0xDFFF) {  // of a pair one
      ascii += '?';
    }
  }
  return ascii;
}

std::string Count(std::size_t number, std::string_view one, std::string_view several) {
  return std::to_string(number) + " " + std::string(number == 1 ? one : several);
}

class Lines {
 public:
  void Line(std::string_view text) { text_.append(text).append("\r\n"); }
  // The words of a text, in as many lines as they take.
  void Paragraph(std::string_view text, std::string_view indent = {}) {
    std::string line;
    while (!text.empty()) {
      const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
      text.remove_prefix(begin);
      std::string_view word = text.substr(0, text.find(' '));
      // One that no line has room for is cut.
      word = word.substr(0, kMostLineChars - indent.size());
      if (word.empty()) break;
      text.remove_prefix(word.size());
      if (line.empty()) {
        line.append(indent).append(word);
      } else if (line.size() + 1 + word.size() <= kMostLineChars) {
        line.append(" ").append(word);
      } else {
        Line(line);
        line = std::string(indent).append(word);
      }
    }
    if (!line.empty()) Line(line);
  }
  void Heading(std::string_view text) {
    Line("");
    Line(text);
    Line(std::string(text.size(), '-'));
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

void PutOrigin(const MediumOrigin& origin, Lines& lines) {
  lines.Heading("Who made it");
  if (origin.institution.empty())
    lines.Paragraph("The institution did not give its name.", kIndent);
  lines.Paragraph(Ascii(origin.institution), kIndent);
  lines.Paragraph(Ascii(origin.address), kIndent);
  if (!origin.phone.empty()) lines.Paragraph("Telephone: " + Ascii(origin.phone), kIndent);
  if (!origin.web.empty()) lines.Paragraph("Web: " + Ascii(origin.web), kIndent);
}

void PutContents(const MediumModel& medium, Lines& lines) {
  const MediumTotals totals = TotalsOf(medium);
  lines.Heading("What is on it");
  lines.Paragraph("Files in the DICOM format, the standard of medical images: " +
                      Count(totals.objects, "object", "objects") + " in " +
                      Count(totals.series, "series", "series") + " of " +
                      Count(totals.studies, "study", "studies") + " of " +
                      Count(totals.patients, "patient.", "patients."),
                  kIndent);
  if (medium.count > 1) {
    lines.Paragraph("This is disc " + std::to_string(medium.number) + " of " +
                        std::to_string(medium.count) + ": the others hold other objects.",
                    kIndent);
  }
  const std::string place = Ascii(medium.objectDirectory);
  lines.Paragraph(
      "The file DICOMDIR lists them all" +
          (place.empty() ? std::string(".") : "; they lie in the directory " + place + ".") +
          " All of them can be imported.",
      kIndent);
  const std::string created = Ascii(medium.origin.created);
  if (created.size() == 8) {
    lines.Paragraph("Created on " + created.substr(0, 4) + "-" + created.substr(4, 2) + "-" +
                        created.substr(6) + ".",
                    kIndent);
  }
}

void PutViewing(const MediumModel& medium, Lines& lines) {
  lines.Heading("How to view it");
  const std::string pages = Ascii(kPagesDirectory);
  const std::string index = (medium.indexIsBelow ? pages + "\\" : "") + Ascii(kIndexPageName);
  lines.Paragraph("Open " + index +
                      " in a web browser: it lists the patients, studies and series, "
                      "and leads to the pages in the directory " +
                      pages + ". It needs no network.",
                  kIndent);
  lines.Paragraph(
      "To see the images, open or import the file DICOMDIR with any program for DICOM "
      "images.",
      kIndent);
  if (!medium.otherContentDirectory.empty()) {
    lines.Paragraph("The directory " + Ascii(medium.otherContentDirectory) +
                        " holds what the institution added, such as a program that shows images. "
                        "Nothing of it starts by itself.",
                    kIndent);
  }
}

}  // namespace

std::string ReadmeText(const MediumModel& medium) {
  Lines lines;
  lines.Line("MEDICAL IMAGES AND DOCUMENTS");
  lines.Line("============================");
  PutOrigin(medium.origin, lines);
  PutContents(medium, lines);
  PutViewing(medium, lines);
  lines.Heading("Please note");
  const std::string disclaimer = Ascii(medium.origin.disclaimer);
  lines.Paragraph(disclaimer.empty()
                      ? "This medium holds confidential medical data. Whoever finds it is asked to "
                        "return it. Its pages give an overview; they are no means of diagnosis."
                      : disclaimer,
                  kIndent);
  lines.Heading("Software");
  lines.Paragraph("Made by " + Ascii(SoftwareName()) + ".", kIndent);
  return lines.Take();
}

}  // namespace quillon
