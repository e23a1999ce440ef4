// Runs every benchmark, then prints for each library benchmark how fast it is
// against its peers measured in the same run.
//
// Naming: "<Family>/<implementation>[/<args>]". The implementation "common" is
// the library; every other implementation of the same family and arguments is
// a peer. The ratio is peer time / library time: above 1 the library is faster.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Measure
{
    std::string implementation;
    double nanoseconds;
};

class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(std::vector<Run> const& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (Run const& run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration)
                continue;
            std::string name = run.benchmark_name();
            size_t first = name.find('/');
            if (first == std::string::npos)
                continue;
            size_t second = name.find('/', first + 1);
            std::string family = name.substr(0, first);
            std::string implementation = name.substr(first + 1, second == std::string::npos ? std::string::npos : second - first - 1);
            std::string args = second == std::string::npos ? std::string() : name.substr(second);
            m_groups[family + args].push_back({implementation, run.GetAdjustedRealTime()});
        }
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        std::printf("\n%-48s %-22s %10s\n", "benchmark", "peer", "ratio");
        for (auto const& [key, measures] : m_groups) {
            double own = 0;
            for (Measure const& m : measures)
                if (m.implementation == "common")
                    own = m.nanoseconds;
            if (own <= 0)
                continue;
            for (Measure const& m : measures)
                if (m.implementation != "common")
                    std::printf("%-48s %-22s %9.2fx\n", key.c_str(), m.implementation.c_str(), m.nanoseconds / own);
        }
    }

private:
    std::map<std::string, std::vector<Measure>> m_groups;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
