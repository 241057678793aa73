// Rendering into the builder's image.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralRender.h"
#include "orvane/builder/PictureTables.h"

#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr float scale = 60.0f;
constexpr int offset = 128;
const std::string literalName = "literal";

struct Picture {
    int width;
    int height;
    int bands = 30;
    int slices = 1; ///< per side; more than 1 for the uppermost strip of slices
};

struct Data {
    explicit Data(const Picture &picture)
        : picture(picture), image(picture.width * picture.height), set(MakeSet(picture.bands))
    {
        builder->SetImageBuffer(picture.width, picture.height);
    }

    void Render()
    {
        for (int slice = 0; slice < picture.slices; ++slice)
            builder->RenderSHToImageBuffer(*set, scale, offset, picture.slices, slice);
    }

    void RenderLiterally()
    {
        for (int slice = 0; slice < picture.slices; ++slice)
            literal::Render(tables, set->coefficients.data(), picture.bands, scale, offset,
                            picture.slices, slice, picture.width, picture.height, image.data());
    }

    Picture picture;
    literal::Tables tables{1024};
    std::vector<std::uint8_t> image;
    std::shared_ptr<SHBuilder> builder = MakeBuilder(1024);
    std::shared_ptr<SphericalHarmonic> set;
};

/// The first render of a size makes what the others use.
Job Render(const Picture &picture, bool isFirst)
{
    const auto data = std::make_shared<Data>(picture);
    Job job;
    job.literal = [=] { data->RenderLiterally(); };
    job.shipped = [=](orvane::InstructionSet set) {
        data->builder->UseInstructionSet(set);
        if (isFirst)
            *data->builder->pictureTables = orvane::PictureTables();
        data->Render();
    };
    return job;
}

/// A process that is started, fills its tables, renders a picture and ends.
Job RenderInNewProcess()
{
    const auto run = [](const std::string &how) {
        std::string program = "/proc/self/exe";
        std::string option = firstPictureOption + how;
        char *arguments[] = {program.data(), option.data(), nullptr};
        pid_t process = 0;
        int status = 0;
        if (posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
            waitpid(process, &status, 0) != process || status != 0)
            throw std::runtime_error("cannot measure a new process");
    };
    Job job;
    job.isElsewhere = true;
    job.literal = [=] { run(literalName); };
    job.shipped = [=](orvane::InstructionSet set) { run(orvane::Name(set)); };
    return job;
}

Scaling Growth()
{
    Scaling scaling;
    for (const auto &[width, height] :
         {std::pair{128, 64}, {512, 256}, {1280, 640}, {2048, 1024}}) {
        const auto data = std::make_shared<Data>(Picture{width, height});
        scaling.sizes.push_back({static_cast<double>(width * height), [=] { data->Render(); }});
    }
    return scaling;
}

double KeptBytes()
{
    Data data({2048, 1024});
    data.Render();
    return static_cast<double>(data.builder->pictureTables->Size());
}

} // namespace

void RenderFirstPicture(const std::string &how)
{
    const auto set = MakeSet(30);
    constexpr Picture picture = {256, 128};
    if (how == literalName) {
        std::vector<std::uint8_t> image(picture.width * picture.height);
        return literal::Render(literal::Tables(1024), set->coefficients.data(), picture.bands,
                               scale, offset, 1, 0, picture.width, picture.height, image.data());
    }
    const auto builder = MakeObject<SHBuilder>();
    for (const auto instructionSet : instructionSets)
        if (how == orvane::Name(instructionSet))
            builder->UseInstructionSet(instructionSet);
    builder->GenerateLookUpTables(1024);
    builder->SetImageBuffer(picture.width, picture.height);
    builder->RenderSHToImageBuffer(*set, scale, offset, 1, 0);
}

void AddRenderJobs()
{
    const struct {
        const char *name;
        Picture picture;
        Aims aims;
    } jobs[] = {
        {"render 32×16, 30 bands", {32, 16}, {}},
        {"render 64×32, 30 bands", {64, 32}, {}},
        {"render 256×128, 30 bands", {256, 128}, {8000.0, 5000.0, 2000.0}},
        {"render 256×128, 12 bands", {256, 128, 12}, {}},
        {"render 255×127, 30 bands", {255, 127}, {}},
        {"render 1024×512, 30 bands", {1024, 512}, {10000.0, 7000.0, 3000.0}},
        {"render 4 of 16 slices of 1024×512, 30 bands", {1024, 512, 30, 4}, {}},
    };
    for (const auto &job : jobs) {
        AddJob(job.name, job.aims, [=] { return Render(job.picture, false); });
        AddJob(std::string(job.name) + ", first of its size", {},
               [=] { return Render(job.picture, true); });
    }
    AddJob("a new process to its first picture", {}, RenderInNewProcess);
    AddScaling("render, 30 bands", "pixels", Growth);
    AddMemory("kept for pictures of 2048×1024 (4 MB at the most)", KeptBytes);
}

} // namespace bench
