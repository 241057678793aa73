#include "orvane/builder/SHBuilder.h"
#include "orvane/module/ClassTables.h"
#include "orvane/module/Module.h"
#include "tests/module/Interpreter.h"

#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>
#include <vector>

namespace {

using namespace orvane::binding;

const std::vector<ClassDescriptor *> descriptors = {SHBuilder::StaticClassDescriptor(),
                                                    SphericalHarmonic::StaticClassDescriptor()};

/// Types of a signature in the words of surface.tsv.
std::string Words(const MethodSignature &signature, int first, int count)
{
    std::string words;
    for (int i = first; i < first + count; ++i) {
        const std::string type = signature.types[i];
        words += (i > first ? " " : "") + (type == "SphericalHarmonic| None" ? "SH" : type);
    }
    return words;
}

/// A method's style, result and arguments. Only thunks have a signature.
std::string Shape(const MethodRow &row, const MethodSignatureMap &signatures)
{
    const auto signature = signatures.find(row.name);
    if (signature != signatures.end()) {
        const MethodSignature &types = signature->second;
        EXPECT_EQ(types.optionalCount, 0);
        EXPECT_EQ(types.types[types.argumentCount + 1], nullptr);
        return "thunk\t" + Words(types, 0, 1) + '\t' + Words(types, 1, types.argumentCount);
    }
    const char *const results[] = {"None", "int", "float", "SH", "?", "?", "buffer"};
    const std::string result = results[static_cast<int>(row.entry.result)];
    return row.entry.style == Style::Tuple ? "tuple\t" + result + '\t' + row.entry.format
                                           : "direct\t" + result + '\t';
}

/// What the records and the table hold of the surface, as surface.tsv does: support.py describes
/// it.
std::string Surface(const ClassDescriptor &descriptor, const ClassTable &table)
{
    std::ostringstream surface;
    const auto endLine = [&](const char *doc) {
        surface << '\t' << std::regex_replace(doc, std::regex("\n"), "\\n") << '\n';
    };
    surface << "class\t" << descriptor.clsid->GetName();
    endLine(descriptor.doc);
    const AttributeRecord *attribute = descriptor.attributes;
    for (; attribute->name; ++attribute) {
        surface << "attribute\t" << attribute->name << '\t' << attribute->typeCode << ' '
                << attribute->fieldOffset << ' ' << attribute->fieldSize << " 0x" << std::hex
                << attribute->flags / 16 << attribute->flags % 16 << std::dec;
        endLine(attribute->doc);
    }
    const AttributeRecord zero{};
    EXPECT_EQ(std::memcmp(attribute, &zero, sizeof zero), 0);

    const PyMethodDef *method = descriptor.methods;
    for (const MethodRow &row : table.methods) {
        EXPECT_NE(method->ml_meth, nullptr);
        EXPECT_EQ(method->ml_flags, METH_VARARGS);
        surface << "method\t" << method->ml_name << '\t' << Shape(row, *descriptor.signatures);
        endLine(method->ml_doc);
        ++method;
        for (std::size_t argument = 0; argument < row.entry.argumentCount; ++argument)
            EXPECT_FALSE(row.note.arguments[argument].text.empty()) << row.name;
    }
    EXPECT_EQ(method->ml_name, nullptr);
    EXPECT_EQ(method->ml_meth, nullptr);
    return surface.str();
}

TEST(ClassDescription, HoldsTheSurface)
{
    std::ostringstream expected;
    expected << std::ifstream(ORVANE_SURFACE).rdbuf();
    EXPECT_EQ(Surface(*descriptors[1], sphericalHarmonicTable) +
                  Surface(*descriptors[0], shBuilderTable),
              expected.str());
}

TEST(ClassDescription, HoldsIdentityAndInterfaces)
{
    for (const ClassDescriptor *descriptor : descriptors) {
        EXPECT_STREQ(descriptor->clsid->GetModule(), "Orvane");
        const Tx::InterfaceEntry *interfaces = descriptor->interfaces;
        EXPECT_STREQ(interfaces[0].iid->GetName(), "IRoot");
        EXPECT_EQ(interfaces[1].iid, descriptor->iid);
        EXPECT_STREQ(interfaces[1].iid->GetName(), descriptor->clsid->GetName());
        EXPECT_NE(interfaces[2].iid, descriptor->iid);
        EXPECT_TRUE(interfaces[2].iid->IsEqual(*descriptor->iid));
        EXPECT_EQ(interfaces[3].iid, nullptr);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(interfaces[i].offset, 0);
        EXPECT_TRUE(PyType_Check(descriptor->pyType));
        EXPECT_EQ(descriptor->counterA, 0);
        EXPECT_EQ(descriptor->counterB, 0);
        EXPECT_EQ(descriptor->reserved1, nullptr);
    }
}

} // namespace
