#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tavrin::bench {

/// A subject and its rival in the same run. What is compared bears the same sizes behind both names.
struct Comparison
{
    std::string headline;
    std::string subject;
    std::string rival;
};

/// Prints the usual lines, and at the end how many times as long each subject took as its rival.
class RatioReporter final : public benchmark::ConsoleReporter
{
public:
    /// Subject and rival are named "<what>/<size>" and "<what>_Rival/<size>".
    RatioReporter() = default;
    RatioReporter(std::vector<Comparison> comparisons, int decimals)
        : m_comparisons(std::move(comparisons))
        , m_decimals(decimals)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (!run.error_occurred)
                m_times[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override
    {
        if (m_comparisons.empty()) {
            std::printf("\nRatio of the time to the rival's in the same run (below 1: faster)\n");
            for (const auto& [name, time] : m_times)
                printRatio(name, time, subjectOf(name) + "_Rival");
        }
        for (const Comparison& comparison : m_comparisons) {
            std::printf("\n%s\n", comparison.headline.c_str());
            for (const auto& [name, time] : m_times) {
                if (subjectOf(name) == comparison.subject)
                    printRatio(name, time, comparison.rival);
            }
        }
    }

private:
    /// The name without its sizes.
    static std::string subjectOf(const std::string& name) { return name.substr(0, name.find('/')); }

    void printRatio(const std::string& name, double time, const std::string& rival) const
    {
        const auto found = m_times.find(rival + name.substr(subjectOf(name).size()));
        if (found != m_times.end())
            std::printf("  %-56s %8.*f\n", name.c_str(), m_decimals, time / found->second);
    }

    std::vector<Comparison> m_comparisons;
    int m_decimals = 2;
    std::map<std::string, double> m_times;
};

inline int run(int argc, char** argv, RatioReporter reporter = {})
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

} // namespace tavrin::bench
