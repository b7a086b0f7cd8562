#pragma once

#include <functional>
#include <string>
#include <vector>

/// Nanoseconds of the steady clock.
long long NowNs();

/// One line of the result: ours beside the baseline of the same run, or beside a fixed limit.
struct stDef_BenchRow
{
    std::string sName;
    double dOurs = 0;
    double dBaseline = 0; ///< 0: none, the goal is an absolute one
    std::string sUnit;
    double dGoal = 0; ///< highest good ratio, or highest good value where there is no baseline; 0 for none
    std::string sNote;
    bool bAbsolute = false; ///< the goal holds for our value, also where there is a baseline
};

void PrintHead();
void PrintRow(const stDef_BenchRow& stRow);
/// True if no row that was printed missed its goal.
bool AllGoalsMet();

/// Median of a list, which is sorted on the way.
double Median(std::vector<double>& arValues);
/// The value below which so much (0..1) of a sorted or unsorted list lies.
double Percentile(std::vector<double>& arValues, double dShare);

/// Runs both operations in turn, so that a change of the machine's pace meets both, and gives the median of each in ns.
struct stDef_Pair
{
    double dOurs, dBaseline;
};
stDef_Pair MeasurePair(int nRounds, const std::function<void()>& ours, const std::function<void()>& baseline);
