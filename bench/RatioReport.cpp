// Runs the benchmarks and prints, after Google Benchmark's own table, one line for each comparison with the ratio of its two sides.

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
    void (*Ours)(benchmark::State&);
    void (*Peer)(benchmark::State&);
    std::string PeerName;
    bool StartsThreads;
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
                          const char* peerName, bool startsThreads)
{
    Comparisons().push_back({name, limit, ours, peer, peerName, startsThreads});
    return true;
}

int main(int argc, char** argv)
{
    // A process that had a second thread counts references and locks from then on, so what starts one comes last.
    std::stable_partition(Comparisons().begin(), Comparisons().end(), [](const Comparison& item) { return !item.StartsThreads; });
    for (const Comparison& comparison : Comparisons())
        for (const auto& [name, function] :
             {std::pair(OurName(comparison.Name), comparison.Ours), std::pair(PeerBenchmarkName(comparison), comparison.Peer)})
            benchmark::RegisterBenchmark(name.c_str(), function)
                ->Repetitions(Repetitions)
                ->ReportAggregatesOnly(false)
                ->UseRealTime();
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
