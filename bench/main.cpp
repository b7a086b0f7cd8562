#include <QApplication>
#include <cstdio>
#include <cstring>

#include "BenchTable.h"
#include "Benches.h"

namespace {

struct stDef_Group
{
    const char* pName;
    void (*run)();
};

constexpr stDef_Group g_arGroups[] = {
    {"xml", BenchXml},           {"http", BenchHttp},
    {"ring", BenchRing},         {"objects", BenchObjects},
    {"intake", BenchIntake},     {"settings", BenchSettings},
    {"cameras", BenchCameras},   {"drivers", BenchDrivers},
    {"schedule", BenchSchedule}, {"parameters", BenchParameters},
    {"motion", BenchMotion},
};

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && !std::strcmp(argv[1], "--ring-reader"))
        return RingReaderProcess(argc - 2, argv + 2);
    if (argc > 1 && !std::strcmp(argv[1], "--intake"))
        return IntakeProcess(argc - 2, argv + 2);
    QApplication app(argc, argv);

    PrintHead();
    for (const stDef_Group& stGroup : g_arGroups) {
        bool bWanted = argc < 2;
        for (int i = 1; i < argc; ++i)
            bWanted |= !std::strcmp(argv[i], stGroup.pName);
        if (bWanted)
            stGroup.run();
    }
    return AllGoalsMet() ? 0 : 1;
}
