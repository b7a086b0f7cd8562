#include <QString>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "BenchTable.h"
#include "Benches.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Attributes = 40; // what the node of one camera has, about

std::string CameraDocument(int nCameras)
{
    std::string sXml = "<root>\n  <Camera count=\"" + std::to_string(nCameras) + "\">\n";
    for (int i = 0; i < nCameras; ++i) {
        char szName[16];
        std::snprintf(szName, sizeof szName, "Cam%03d", i);
        sXml += std::string("    <") + szName;
        for (int j = 0; j < Attributes; ++j)
            sXml += " Key" + std::to_string(j) + "=\"" + std::to_string(i * 1000 + j) + "\"";
        sXml += "/>\n";
    }
    return sXml + "  </Camera>\n</root>";
}

/// Paths and keys of one page's reads, made beforehand on both sides: what is measured is the look-up.
struct stDef_Case
{
    int nCameras;
    std::string sXml = CameraDocument(nCameras);
    std::vector<QString> arPaths;
    std::vector<std::string> arNames;

    explicit stDef_Case(int n) : nCameras(n)
    {
        for (int i = 0; i < 64; ++i) { // the same number of reads whatever the size, spread over the document
            const int nCamera = static_cast<int>((static_cast<long long>(i) * 7919) % n);
            arPaths.push_back(QString::asprintf("/root/Camera/Cam%03d", nCamera));
            char szName[16];
            std::snprintf(szName, sizeof szName, "Cam%03d", nCamera);
            arNames.emplace_back(szName);
        }
    }
};

double g_dReadNs[2] = {};

void Measure(const stDef_Case& stCase, std::size_t nIndex)
{
    CXmlObj xml;
    xml.m_F_b_LoadXML(QString::fromStdString(stCase.sXml));
    pugi::xml_document doc;
    doc.load_buffer(stCase.sXml.data(), stCase.sXml.size());
    const QString sKey = u"Key20"_s;
    const std::string sSize = std::to_string(stCase.nCameras) + " cameras";
    const double dReads = static_cast<double>(stCase.arPaths.size());

    const stDef_Pair stRead = MeasurePair(
        2000,
        [&] {
            QString sOut;
            for (const QString& sPath : stCase.arPaths)
                xml.m_F_n_GetValue(sPath, sKey, sOut, {});
        },
        [&] {
            QString sOut;
            for (const std::string& sName : stCase.arNames)
                sOut = QString::fromUtf8(
                    doc.child("root").child("Camera").child(sName.c_str()).attribute("Key20").value());
        });
    g_dReadNs[nIndex] = stRead.dOurs / dReads;
    PrintRow({"XML read, " + sSize, stRead.dOurs / dReads, stRead.dBaseline / dReads, "ns", 1.5, "pugixml directly"});

    const stDef_Pair stWrite = MeasurePair(
        2000,
        [&] {
            int n = 0;
            for (const QString& sPath : stCase.arPaths)
                xml.m_F_b_SetValue(sPath, sKey, ++n);
        },
        [&] {
            int n = 0;
            for (const std::string& sName : stCase.arNames)
                doc.child("root").child("Camera").child(sName.c_str()).attribute("Key20").set_value(++n);
        });
    PrintRow(
        {"XML write, " + sSize, stWrite.dOurs / dReads, stWrite.dBaseline / dReads, "ns", 1.5, "pugixml directly"});
}

} // namespace

void BenchXml()
{
    Measure(stDef_Case(64), 0);
    Measure(stDef_Case(1024), 1);
    PrintRow({"XML read, 1024 against 64 cameras", g_dReadNs[1], g_dReadNs[0], "ns", 1.5, "ours both: must not grow"});
}
