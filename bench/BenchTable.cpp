#include "BenchTable.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

bool g_bAllMet = true;

} // namespace

long long NowNs()
{
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

void PrintHead()
{
    std::printf("%-46s %12s %12s %-8s %7s %9s  %s\n", "", "ours", "baseline", "unit", "ratio", "goal", "");
}

void PrintRow(const stDef_BenchRow& stRow)
{
    const bool bRatio = stRow.dBaseline > 0;
    const double dRatio = bRatio ? stRow.dOurs / stRow.dBaseline : 0;
    const double dJudged = bRatio && !stRow.bAbsolute ? dRatio : stRow.dOurs;
    const bool bMet = stRow.dGoal <= 0 || dJudged <= stRow.dGoal;
    g_bAllMet &= bMet;
    char szBaseline[32] = "-", szRatio[32] = "-", szGoal[32] = "-";
    if (bRatio) {
        std::snprintf(szBaseline, sizeof szBaseline, "%.2f", stRow.dBaseline);
        std::snprintf(szRatio, sizeof szRatio, "%.2f", dRatio);
    }
    if (stRow.dGoal > 0)
        std::snprintf(szGoal, sizeof szGoal, "<= %.4g", stRow.dGoal);
    std::printf("%-46s %12.2f %12s %-8s %7s %9s  %s%s\n", stRow.sName.c_str(), stRow.dOurs, szBaseline,
                stRow.sUnit.c_str(), szRatio, szGoal, bMet ? "" : "MISSED ", stRow.sNote.c_str());
    std::fflush(stdout);
}

bool AllGoalsMet()
{
    return g_bAllMet;
}

double Median(std::vector<double>& arValues)
{
    return Percentile(arValues, 0.5);
}

double Percentile(std::vector<double>& arValues, double dShare)
{
    if (arValues.empty())
        return 0;
    std::sort(arValues.begin(), arValues.end());
    return arValues[static_cast<std::size_t>(dShare * static_cast<double>(arValues.size() - 1))];
}

stDef_Pair MeasurePair(int nRounds, const std::function<void()>& ours, const std::function<void()>& baseline)
{
    std::vector<double> arOurs, arBaseline;
    const auto timed = [](const std::function<void()>& operation) {
        const long long nBegin = NowNs();
        operation();
        return static_cast<double>(NowNs() - nBegin);
    };
    ours();
    baseline();
    for (int i = 0; i < nRounds; ++i) {
        arOurs.push_back(timed(ours));
        arBaseline.push_back(timed(baseline));
    }
    return {Median(arOurs), Median(arBaseline)};
}
