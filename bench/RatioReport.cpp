// Runs the benchmarks and prints, behind Google Benchmark's own table, one line for each comparison with the ratio of its two sides.

#include "RatioReport.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace
{
constexpr int Repetitions = 9;

struct Comparison
{
    std::string Name;
    double Limit;
    std::string PeerName;
};

std::vector<Comparison>& Comparisons()
{
    static std::vector<Comparison> s_comparisons;
    return s_comparisons;
}

std::string OurName(const std::string& name)
{
    return name + "/ours";
}

std::string PeerBenchmarkName(const Comparison& comparison)
{
    return comparison.Name + "/" + comparison.PeerName;
}

// Keeps the real time of every repetition beside printing it.
class CollectingReporter final : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
        ConsoleReporter::ReportRuns(runs);
    }

    // The median time of a benchmark, or 0 when it did not run.
    double GetMedian(const std::string& name)
    {
        std::vector<double>& times = m_times[name];
        if (times.empty())
            return 0.0;
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    }

private:
    std::map<std::string, std::vector<double>> m_times;
};
}

bool ZVRegisterComparison(const char* name, double limit, void (*ours)(benchmark::State&), void (*peer)(benchmark::State&),
                          const char* peerName)
{
    Comparisons().push_back({name, limit, peerName});
    const Comparison& comparison = Comparisons().back();
    for (const auto& [fullName, function] : {std::pair(OurName(name), ours), std::pair(PeerBenchmarkName(comparison), peer)})
        benchmark::RegisterBenchmark(fullName.c_str(), function)
            ->Repetitions(Repetitions)
            ->ReportAggregatesOnly(false)
            ->UseRealTime();
    return true;
}

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    printf("\n%-28s %-22s %10s %10s\n", "comparison", "peer", "ratio", "limit");
    for (const Comparison& comparison : Comparisons())
    {
        const double ours = reporter.GetMedian(OurName(comparison.Name));
        const double peer = reporter.GetMedian(PeerBenchmarkName(comparison));
        if (ours > 0.0 && peer > 0.0)
            printf("%-28s %-22s %10.2f %10.2f%s\n", comparison.Name.c_str(), comparison.PeerName.c_str(), ours / peer,
                   comparison.Limit, ours / peer > comparison.Limit ? "  over the limit" : "");
    }
    return 0;
}
