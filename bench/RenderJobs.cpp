// Rendering into the builder's image.

#include "bench/Harness.h"
#include "bench/Jobs.h"
#include "bench/Objects.h"
#include "model/LiteralRender.h"

#include <string>

namespace bench {

namespace {

constexpr float scale = 60.0f;
constexpr int offset = 128;

struct Data {
    Data(int width, int height) : width(width), height(height), image(width * height)
    {
        builder->SetImageBuffer(width, height);
    }

    void Render() { builder->RenderSHToImageBuffer(*set, scale, offset, 1, 0); }

    int width;
    int height;
    literal::Tables tables{1024};
    std::vector<std::uint8_t> image;
    std::shared_ptr<SHBuilder> builder = MakeBuilder(1024);
    std::shared_ptr<SphericalHarmonic> set = MakeSet(30);
};

Job Render(int width, int height)
{
    const auto data = std::make_shared<Data>(width, height);
    Job job;
    job.literal = [=] {
        literal::Render(data->tables, data->set->coefficients.data(), 30, scale, offset, 1, 0,
                        width, height, data->image.data());
    };
    job.shipped = [=](orvane::InstructionSet set) {
        data->builder->UseInstructionSet(set);
        data->Render();
    };
    return job;
}

Scaling Growth()
{
    Scaling scaling;
    for (const auto &[width, height] : {std::pair{128, 64}, {400, 205}, {1280, 640}}) {
        const auto data = std::make_shared<Data>(width, height);
        scaling.sizes.push_back({static_cast<double>(width * height), [=] { data->Render(); }});
    }
    return scaling;
}

} // namespace

void AddRenderJobs()
{
    AddJob("render 256×128, 30 bands", {1700.0, 800.0, 300.0}, [] { return Render(256, 128); });
    AddJob("render 1024×512, 30 bands", {2300.0, 1200.0, 500.0}, [] { return Render(1024, 512); });
    AddScaling("render, 30 bands", "pixels", Growth);
}

} // namespace bench
