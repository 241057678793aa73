#include "orvane/manual/Manual.h"
#include "orvane/module/ClassTables.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace orvane::manual {

namespace {

using namespace binding;

/// The widest line, in characters.
constexpr std::size_t width = 100;

/// The words of `text` in lines that `indent` begins.
std::string Wrapped(std::string_view text, const std::string &indent)
{
    std::string lines;
    std::string line = indent;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (line.size() + 1 + word.size() > width) {
            lines += line + '\n';
            line = indent;
        }
        if (line.size() > indent.size())
            line += ' ';
        line += word;
    }
    return lines + line + '\n';
}

void WriteAttribute(std::ostream &stub, const AttributeRow &row)
{
    const char *const type = row.type == AttributeTypeDouble ? "float" : "int";
    stub << '\n';
    if (row.access & AttributeWritable)
        stub << "    " << row.name << ": " << type << '\n'
             << Wrapped("\"\"\"" + std::string(row.note) + "\"\"\"", "    ");
    else
        stub << "    @property\n    def " << row.name << "(self) -> " << type << ":\n"
             << Wrapped("\"\"\"" + std::string(row.note) + "\"\"\"", "        ") << "        ...\n";
}

void WriteMethod(std::ostream &stub, const MethodRow &row)
{
    const Entry &entry = row.entry;
    const Note &note = row.note;
    stub << "\n    def " << row.name << "(self";
    if (entry.style == Style::Direct)
        stub << ", *__ignored: Any";
    for (std::size_t i = 0; i < entry.argumentCount; ++i)
        stub << ", __" << note.arguments[i].name << ": " << NamesOf(entry.arguments[i]).stub;
    stub << ") -> " << NamesOf(entry.result).stub << ":\n";

    const std::string indent(8, ' ');
    stub << Wrapped("\"\"\"" + std::string(note.what), indent);
    if (!note.remarks.empty())
        stub << '\n' << Wrapped(note.remarks, indent);
    if (entry.argumentCount > 0)
        stub << '\n';
    for (std::size_t i = 0; i < entry.argumentCount; ++i)
        stub << Wrapped(
            std::string(note.arguments[i].name).append(": ").append(note.arguments[i].text),
            indent);
    if (!note.result.empty())
        stub << '\n' << Wrapped("Returns " + std::string(note.result), indent);
    if (!note.errors.empty())
        stub << '\n' << Wrapped("Errors: " + std::string(note.errors), indent);
    stub << indent << "\"\"\"\n" << indent << "...\n";
}

} // namespace

void WriteStub(std::ostream &stub, const char *version)
{
    stub << "# The signatures of the Python 2.7 module _Orvane, version " << version << ".\n"
         << "# Made by scripts/reference.sh from the tables in orvane/module/.\n\n"
            "import mmap\n"
            "from array import array\n"
            "from typing import Any, Tuple, Union, final\n\n"
            "@final\n"
            "class _Buffer(object):\n"
            "    \"\"\"Python 2.7's built-in buffer, which today's checkers do not know.\"\"\"\n\n"
            "    def __len__(self) -> int: ...\n"
            "    def __str__(self) -> str: ...\n"
            "    def __getitem__(self, __index: Union[int, slice]) -> str: ...\n\n"
            "_ReadBuffer = Union[str, bytearray, _Buffer, array[Any], mmap.mmap]\n"
            "_Row = Tuple[float, float, float, float]\n"
            "_Matrix = Tuple[_Row, _Row, _Row, _Row]\n";
    for (const ClassTable *table : classTables) {
        stub << "\n@final\nclass " << table->name << "(object):\n"
             << Wrapped("\"\"\"" + std::string(table->note) + "\"\"\"", "    ")
             << "\n    def __init__(self) -> None: ...\n";
        for (const AttributeRow &row : table->attributes)
            WriteAttribute(stub, row);
        for (const MethodRow &row : table->methods)
            WriteMethod(stub, row);
    }
}

} // namespace orvane::manual
