#pragma once

// A console reporter that also keeps each benchmark's time per iteration (the median of its
// repetitions when there are several), so a program can print its results as ratios to a baseline
// measured in the same run.
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

class ratio_reporter : public benchmark::ConsoleReporter
{
public:
    enum time_kind
    {
        CPUTime,
        RealTime
    };

    explicit ratio_reporter(time_kind Kind = CPUTime) : Kind(Kind) {}

    void ReportRuns(const std::vector<Run> &Runs) override
    {
        ConsoleReporter::ReportRuns(Runs);
        for (const Run &Result : Runs) {
            bool IsMedian = Result.run_type == Run::RT_Aggregate && Result.aggregate_name == "median";
            if (IsMedian || (Result.run_type == Run::RT_Iteration && Result.repetitions <= 1))
                Times[Result.run_name.function_name] =
                    Kind == CPUTime ? Result.GetAdjustedCPUTime() : Result.GetAdjustedRealTime();
        }
    }

    // Runs the program's benchmarks through this reporter; false on arguments the library did not know.
    bool RunAll(int &argc, char **argv)
    {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv))
            return false;
        benchmark::RunSpecifiedBenchmarks(this);
        benchmark::Shutdown();
        return true;
    }

    // A benchmark's time in its own unit, or a negative number when it did not run.
    double GetTime(const std::string &Name) const
    {
        auto Found = Times.find(Name);
        return Found == Times.end() ? -1 : Found->second;
    }

    // Time of one benchmark over another's, or a negative number when either did not run.
    double GetRatio(const std::string &Numerator, const std::string &Denominator) const
    {
        auto Top = Times.find(Numerator);
        auto Bottom = Times.find(Denominator);
        if (Top == Times.end() || Bottom == Times.end())
            return -1;
        return Top->second / Bottom->second;
    }

private:
    time_kind Kind;
    std::map<std::string, double> Times;
};
