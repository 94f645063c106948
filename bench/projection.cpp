// Projecting positions one by one against PROJ's own loop over arrays.

#include "utils/TORVGeoProjection.h"
#include "utils/TORVPoint3D.h"

#include <benchmark/benchmark.h>

#include <proj.h>

#include <limits>
#include <memory>
#include <vector>

namespace
{

constexpr int PointCount = 100000;
constexpr double RadiansPerDegree = 3.14159265 / 180.0;
constexpr double Ellipsoid = 298.257224;
constexpr double Sphere = std::numeric_limits<float>::max();

// Arguments: 0 for a sphere, 1 for an ellipsoid.
double flattening(const benchmark::State& state)
{
    return state.range(0) == 0 ? Sphere : Ellipsoid;
}

std::vector<TORVCoordinate> positions()
{
    std::vector<TORVCoordinate> result;
    result.reserve(PointCount);
    for (int i = 0; i < PointCount; ++i) {
        result.emplace_back(58.0 + (i % 317) * 0.012, 22.0 + (i / 317) * 0.019);
    }
    return result;
}

void projOnArrays(benchmark::State& state)
{
    const QByteArray definition =
        QString::asprintf("+proj=aeqd +lat_0=60.0 +lon_0=25.0 +a=6371000.0 +rf=%f", flattening(state)).toUtf8();
    const std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)> context(proj_context_create(),
                                                                               proj_context_destroy);
    const std::unique_ptr<PJ, decltype(&proj_destroy)> projection(proj_create(context.get(), definition.constData()),
                                                                  proj_destroy);
    const std::vector<TORVCoordinate> coordinates = positions();
    std::vector<double> x(PointCount);
    std::vector<double> y(PointCount);
    for (auto _ : state) {
        for (int i = 0; i < PointCount; ++i) {
            x[i] = coordinates[i].getLon() * RadiansPerDegree;
            y[i] = coordinates[i].getLat() * RadiansPerDegree;
        }
        proj_trans_generic(projection.get(), PJ_FWD, x.data(), sizeof(double), x.size(), y.data(), sizeof(double),
                           y.size(), nullptr, 0, 0, nullptr, 0, 0);
        benchmark::DoNotOptimize(x.data());
        benchmark::DoNotOptimize(y.data());
    }
    state.SetItemsProcessed(state.iterations() * PointCount);
}

void projectFromLatLon(benchmark::State& state)
{
    const TORVGeoProjection projection(QStringLiteral("aeqd"), TORVCoordinate(60.0, 25.0), 6371000.0,
                                       flattening(state));
    const std::vector<TORVCoordinate> coordinates = positions();
    std::vector<TORVPoint3D> points(PointCount);
    for (auto _ : state) {
        for (int i = 0; i < PointCount; ++i) {
            points[i] = projection.projectFromLatLon(coordinates[i]);
        }
        benchmark::DoNotOptimize(points.data());
    }
    state.SetItemsProcessed(state.iterations() * PointCount);
}

} // namespace

BENCHMARK(projOnArrays)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly();
BENCHMARK(projectFromLatLon)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Repetitions(7)->ReportAggregatesOnly();

BENCHMARK_MAIN();
