#include "orvane/builder/SHBuilder.h"
#include "orvane/module/Module.h"
#include "orvane/module/SHBuilderTable.h"
#include "orvane/module/SphericalHarmonicTable.h"
#include "tests/module/Interpreter.h"

#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

namespace {

using Fields = std::vector<std::string>;

struct ExpectedClass {
    std::string doc;
    std::vector<Fields> attributes; ///< name, "code offset size flags", docstring
    std::vector<Fields> methods;    ///< name, style, result, arguments, docstring
};

/// The surface as the script tests expect it too; support.py describes the file.
std::map<std::string, ExpectedClass> ReadSurface()
{
    std::map<std::string, ExpectedClass> classes;
    std::string owner;
    std::ifstream file(ORVANE_SURFACE);
    for (std::string line; std::getline(file, line);) {
        Fields fields;
        std::istringstream stream(line);
        for (std::string field; std::getline(stream, field, '\t'); fields.push_back(field))
            for (std::size_t at; (at = field.find("\\n")) != std::string::npos;)
                field.replace(at, 2, 1, '\n');
        const std::string kind = fields.front();
        fields.erase(fields.begin());
        if (kind == "class") {
            owner = fields[0];
            classes[owner].doc = fields[1];
        } else {
            ExpectedClass &expected = classes[owner];
            (kind == "attribute" ? expected.attributes : expected.methods).push_back(fields);
        }
    }
    return classes;
}

/// The types of a signature in the file's words.
std::string Words(const MethodSignature &signature, int first, int count)
{
    std::string words;
    for (int i = first; i < first + count; ++i) {
        const std::string type = signature.types[i];
        if (!words.empty())
            words += ' ';
        words += type == "SphericalHarmonic| None" ? "SH" : type;
    }
    return words;
}

const std::vector<ClassDescriptor *> descriptors = {SHBuilder::StaticClassDescriptor(),
                                                    SphericalHarmonic::StaticClassDescriptor()};

TEST(ClassDescription, IsRegisteredBuilderFirst)
{
    const auto &registrations = orvane::binding::ClassRegistrations();
    ASSERT_EQ(registrations.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(registrations[i].descriptor, descriptors[i]);
        EXPECT_NE(registrations[i].factory, nullptr);
        EXPECT_EQ(registrations[i].reserved, 0u);
    }
}

TEST(ClassDescription, RecordsHoldTheSurface)
{
    const auto expectedClasses = ReadSurface();
    ASSERT_EQ(expectedClasses.size(), descriptors.size());
    for (const ClassDescriptor *descriptor : descriptors) {
        const std::string name = descriptor->clsid->GetName();
        SCOPED_TRACE(name);
        const ExpectedClass &expected = expectedClasses.at(name);
        EXPECT_STREQ(descriptor->clsid->GetModule(), "Orvane");
        EXPECT_EQ(descriptor->doc, expected.doc);

        const Tx::InterfaceEntry *interfaces = descriptor->interfaces;
        EXPECT_STREQ(interfaces[0].iid->GetName(), "IRoot");
        EXPECT_EQ(interfaces[1].iid, descriptor->iid);
        EXPECT_EQ(interfaces[1].iid->GetName(), name);
        EXPECT_NE(interfaces[2].iid, descriptor->iid);
        EXPECT_TRUE(interfaces[2].iid->IsEqual(*descriptor->iid));
        EXPECT_EQ(interfaces[3].iid, nullptr);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(interfaces[i].offset, 0);

        const AttributeRecord *attribute = descriptor->attributes;
        for (const Fields &fields : expected.attributes) {
            std::ostringstream numbers;
            numbers << attribute->typeCode << ' ' << attribute->fieldOffset << ' '
                    << attribute->fieldSize << " 0x" << (attribute->flags == 0x11 ? "11" : "01");
            EXPECT_EQ((Fields{attribute->name, numbers.str(), attribute->doc}), fields);
            ++attribute;
        }
        const AttributeRecord zero{};
        EXPECT_EQ(std::memcmp(attribute, &zero, sizeof zero), 0);

        const PyMethodDef *method = descriptor->methods;
        std::size_t thunks = 0;
        for (const Fields &fields : expected.methods) {
            SCOPED_TRACE(fields[0]);
            EXPECT_EQ((Fields{method->ml_name, method->ml_doc}), (Fields{fields[0], fields[4]}));
            EXPECT_NE(method->ml_meth, nullptr);
            EXPECT_EQ(method->ml_flags, METH_VARARGS);
            const auto signature = descriptor->signatures->find(fields[0]);
            ASSERT_EQ(signature != descriptor->signatures->end(), fields[1] == "thunk");
            if (fields[1] == "thunk") {
                const MethodSignature &types = signature->second;
                EXPECT_EQ(Words(types, 0, 1), fields[2]);
                EXPECT_EQ(Words(types, 1, types.argumentCount), fields[3]);
                EXPECT_EQ(types.optionalCount, 0);
                ++thunks;
            }
            ++method;
        }
        EXPECT_EQ(descriptor->signatures->size(), thunks);
        EXPECT_EQ(method->ml_name, nullptr);
        EXPECT_EQ(method->ml_meth, nullptr);

        EXPECT_TRUE(PyType_Check(descriptor->pyType));
        EXPECT_EQ(descriptor->counterA, 0);
        EXPECT_EQ(descriptor->counterB, 0);
        EXPECT_EQ(descriptor->reserved1, nullptr);
    }
}

TEST(ClassDescription, IsBuiltOnce)
{
    const ClassDescriptor before = *descriptors[1];
    const std::size_t signatures = before.signatures->size();
    EXPECT_EQ(SphericalHarmonic::StaticClassDescriptor(), descriptors[1]);
    EXPECT_EQ(std::memcmp(&before, descriptors[1], sizeof before), 0);
    EXPECT_EQ(before.signatures->size(), signatures);
    EXPECT_EQ(orvane::binding::ClassRegistrations().size(), 2u);
}

TEST(MethodTable, FormatsAreTheLiteralOnesAndEveryRowIsExplained)
{
    const auto expectedClasses = ReadSurface();
    for (const auto *table :
         {&orvane::binding::shBuilderTable, &orvane::binding::sphericalHarmonicTable}) {
        const auto &methods = expectedClasses.at(table->name).methods;
        for (std::size_t i = 0; i < methods.size(); ++i) {
            const auto &row = table->methods[i];
            const bool tuple = row.entry.style == orvane::binding::Style::Tuple;
            EXPECT_EQ(tuple, methods[i][1] == "tuple") << row.name;
            EXPECT_EQ(tuple ? row.entry.format : "", tuple ? methods[i][3] : "") << row.name;
            for (std::size_t argument = 0; argument < row.entry.argumentCount; ++argument)
                EXPECT_NE(row.note.arguments[argument].text, nullptr) << row.name;
        }
    }
}

} // namespace
