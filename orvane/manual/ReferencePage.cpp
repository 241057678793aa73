#include "orvane/manual/Manual.h"
#include "orvane/module/ClassTables.h"

#include <cctype>
#include <string>
#include <string_view>

namespace orvane::manual {

namespace {

using namespace binding;

constexpr std::string_view introduction =
    R"(How to read it:

- Arguments are given by position; there are no keywords and no defaults. Where an `int` is asked for,
  a `long` will do, and where a `float` is asked for, either will (but not in a matrix).
- A `set` is a `SphericalHarmonic`; `None` is not one. A `read buffer` is a string, `bytearray`,
  `buffer`, `array.array` or `mmap.mmap`; a `memoryview` is none.
- *Errors* names what a call raises beyond a wrong number or type of arguments. A call that raises has
  changed nothing. Every message, and what to do about it, is in
  [limits and errors](limits-and-errors.md).
- Angles are in radians. theta is counted from the pole, phi around it; arguments called latitude and
  longitude are such a theta and phi. The [gallery](gallery.md) draws them, and shows what each method
  does.
- The *docstring* is what `help()` shows. It is part of the module's interface and stays as it is, slips
  of the pen included; where it misleads, the text above it holds.
)";

bool IsMethod(std::string_view word)
{
    for (const ClassTable *table : classTables)
        for (const MethodRow &row : table->methods)
            if (row.name == word)
                return true;
    return false;
}

/// The address within the page of the heading of a class or method.
std::string Anchor(std::string_view name)
{
    std::string anchor = "#";
    for (const char c : name)
        anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return anchor;
}

std::string Link(std::string_view name)
{
    std::string link = "[";
    link += name;
    link += "](";
    link += Anchor(name);
    link += ')';
    return link;
}

/// Plain text as Markdown: its special characters escaped, method names made links.
std::string Markdown(std::string_view text)
{
    std::string markdown;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        while (end < text.size() && std::isalnum(static_cast<unsigned char>(text[end])))
            ++end;
        if (end > i) {
            const std::string_view word = text.substr(i, end - i);
            markdown += IsMethod(word) ? Link(word) : std::string(word);
            i = end;
        } else {
            if (std::string_view("\\`*_<>[]|").find(text[i]) != std::string_view::npos)
                markdown += '\\';
            markdown += text[i++];
        }
    }
    return markdown;
}

/// The same, as a sentence of its own.
std::string Sentence(std::string_view text)
{
    std::string sentence = Markdown(text);
    if (!sentence.empty() && sentence.back() != '.')
        sentence += '.';
    return sentence;
}

/// A docstring as it stands.
void WriteDocstring(std::ostream &page, std::string_view doc)
{
    page << "Docstring:\n\n```text\n" << doc << (doc.ends_with('\n') ? "" : "\n") << "```\n";
}

void WriteContents(std::ostream &page)
{
    page << "\n## Contents\n";
    for (const ClassTable *table : classTables) {
        page << "\n**" << Link(table->name) << "**\n\n| method | what it does |\n|---|---|\n";
        for (const MethodRow &row : table->methods)
            page << "| " << Link(row.name) << " | " << Markdown(row.note.what) << " |\n";
    }
}

void WriteAttributes(std::ostream &page, std::span<const AttributeRow> attributes)
{
    page << "\n| attribute | type | access | meaning | docstring |\n|---|---|---|---|---|\n";
    for (const AttributeRow &row : attributes)
        page << "| `" << row.name << "` | " << (row.type == AttributeTypeDouble ? "float" : "int")
             << " | " << (row.access & AttributeWritable ? "read and write" : "read only") << " | "
             << Markdown(row.note) << " | " << Markdown(row.doc) << " |\n";
}

void WriteMethod(std::ostream &page, const MethodRow &row)
{
    const Entry &entry = row.entry;
    const Note &note = row.note;
    page << "\n### " << row.name << "\n\n```text\n" << row.name << '(';
    for (std::size_t i = 0; i < entry.argumentCount; ++i)
        page << (i ? ", " : "") << note.arguments[i].name;
    page << ") -> " << NamesOf(entry.result).manual << "\n```\n\n" << Markdown(note.what);
    if (!note.remarks.empty())
        page << ' ' << Markdown(note.remarks);
    page << "\n\n";

    if (entry.argumentCount > 0) {
        page << "| argument | type | meaning, unit, range |\n|---|---|---|\n";
        for (std::size_t i = 0; i < entry.argumentCount; ++i)
            page << "| `" << note.arguments[i].name << "` | " << NamesOf(entry.arguments[i]).manual
                 << " | " << Markdown(note.arguments[i].text) << " |\n";
        page << '\n';
    }
    page << "*Returns* " << Sentence(note.result.empty() ? "None" : note.result) << "\n\n";
    if (!note.errors.empty())
        page << "*Errors:* " << Sentence(note.errors) << "\n\n";
    WriteDocstring(page, row.doc);
}

} // namespace

void WriteReferencePage(std::ostream &page, const char *version)
{
    page << "# Reference\n\nThe module `_Orvane`, version " << version
         << ". (This page is made by `scripts/reference.sh` from the tables in "
            "`orvane/module/`.)\n\n"
         << introduction;
    WriteContents(page);
    for (const ClassTable *table : classTables) {
        page << "\n## " << table->name << "\n\n" << Markdown(table->note) << "\n\n";
        WriteDocstring(page, table->doc);
        WriteAttributes(page, table->attributes);
        for (const MethodRow &row : table->methods)
            WriteMethod(page, row);
    }
}

} // namespace orvane::manual
