#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace tavrin::bench {

/// Prints the usual lines, and at the end how many times as long each subject took as its rival. Subject and
/// rival are named "<what>/<size>" and "<what>_Rival/<size>".
class RatioReporter final : public benchmark::ConsoleReporter
{
public:
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
        std::printf("\nRatio of the time to the rival's in the same run (below 1: faster)\n");
        for (const auto& [name, time] : m_times) {
            const std::string rival = rivalOf(name);
            if (const auto found = m_times.find(rival); found != m_times.end())
                std::printf("  %-56s %8.2f\n", name.c_str(), time / found->second);
        }
    }

private:
    static std::string rivalOf(const std::string& name)
    {
        const auto slash = name.find('/');
        return slash == std::string::npos ? name + "_Rival"
                                          : name.substr(0, slash) + "_Rival" + name.substr(slash);
    }

    std::map<std::string, double> m_times;
};

inline int run(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

} // namespace tavrin::bench
