#include "command_list.h"

#include <cstdio>
#include <string>

#include "NrvCommandTable.h"

namespace {

const char* KindName(int nKind)
{
    return nKind == kNrvKindNumber ? "number" : "text";
}

}  // namespace

bool PrintCommandList()
{
    size_t nCount = 0;
    const TNrvCommandInfo* pCommands = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i) {
        const TNrvCommandInfo& command = pCommands[i];
        // Each extension set under its own heading, after the seed commands.
        if (i != 0 && command.nSet != pCommands[i - 1].nSet)
            printf("\n%s commands (an extension set, enabled unless --seed-only):\n",
                   NrvCommandSetName(command.nSet));
        std::string signature = std::string(command.pszName) + "(";
        for (size_t j = 0; j < command.nParameterCount; ++j) {
            signature += j != 0 ? ", " : "";
            signature += std::string(command.pParameters[j].pszName) + ": " + KindName(command.pParameters[j].nKind);
        }
        printf("%s) -> %s\n    %s\n", signature.c_str(), KindName(command.nResultType), command.pszSummary);
    }
    return true;
}
