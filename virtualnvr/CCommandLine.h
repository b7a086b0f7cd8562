#pragma once

#include "CVirtualNvr.h"

#include <iosfwd>
#include <string>
#include <vector>

/// What the program was told to do.
struct stDef_CommandLine
{
    stDef_VirtualNvrConfig stRecorder;
    std::vector<std::string> arFaults; ///< as CFaultTable parses them
    std::vector<std::string> arRecordFaults;
    struct stDef_StreamFault
    {
        std::string sMount, sName;
        long nArg = 0;
        long nAfterS = 0; ///< seconds after the start
    };
    std::vector<stDef_StreamFault> arStreamFaults;
    std::vector<std::string> arWarnings; ///< what is taken all the same
    std::string sCardFile;
    std::string sName = "Virtual recorder"; ///< in the card
    bool bLog = false;
    bool bHelp = false;
};

/// The options of the program, in one table that is parsed and printed.
class CCommandLine
{
public:
    /// @return false with sError telling the option and what is wrong with it
    static bool s_F_b_Parse(int nCount, char** ppszArgs, stDef_CommandLine& stLine, std::string& sError);

    static void s_S_PrintHelp(std::ostream& objOut);
};
