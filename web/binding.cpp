// The playground's window on the engine: plain C functions exported to
// JavaScript, each a call of the page's portable part (NrvPlayground.h).
// Texts come as a pointer and a length in bytes (UTF-8 from the page, any
// bytes from a dropped file). Each function returns a JSON text that stays
// valid until the next call (the page copies it at once), so one call
// crosses the boundary per keystroke however many scans there are.
#include <emscripten/emscripten.h>

#include <new>
#include <string>
#include <string_view>

#include "NrvPlayground.h"

namespace {

CNrvPlayground g_Playground;
std::string g_Reply;

// Runs fn and turns an allocation failure (a runaway Substitute nest, a
// reply too large for the heap) into a reply the page shows as a message;
// the engine has released what it held by then. That reply is a constant:
// building it must not need the memory that just ran out.
template <typename F>
const char* Guarded(F fn)
{
    try {
        std::string().swap(g_Reply);  // the last reply's memory, back before the next is built
        g_Reply = fn();
    } catch (const std::bad_alloc&) {
        return "{\"outOfMemory\":true}";
    }
    return g_Reply.c_str();
}

std::string_view Text(const char* pData, size_t nLength)
{
    return std::string_view(nLength != 0 ? pData : "", nLength);
}

}  // namespace

extern "C" {

EMSCRIPTEN_KEEPALIVE const char* nrv_parse(const char* pExpression, size_t nExpression)
{
    return Guarded([&] { return g_Playground.Parse(Text(pExpression, nExpression)); });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_set_seed_only(int bSeedOnly)
{
    return Guarded([&] { return g_Playground.SetSeedOnly(bSeedOnly != 0); });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_set_triggers(const char* pMinimum, size_t nMinimum, const char* pMaximum,
                                                  size_t nMaximum, const char* pSymbologies, size_t nSymbologies,
                                                  const char* pContains, size_t nContains, const char* pStartsWith,
                                                  size_t nStartsWith, const char* pEndsWith, size_t nEndsWith,
                                                  int bEscapes)
{
    return Guarded([&] {
        return g_Playground.SetTriggers(Text(pMinimum, nMinimum), Text(pMaximum, nMaximum),
                                        Text(pSymbologies, nSymbologies), Text(pContains, nContains),
                                        Text(pStartsWith, nStartsWith), Text(pEndsWith, nEndsWith), bEscapes != 0);
    });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_set_scans(const char* pScans, size_t nScans, int bEscapes)
{
    return Guarded([&] { return g_Playground.SetScans(Text(pScans, nScans), bEscapes != 0); });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_edit_scans(int nSymbology, int nFirst, int nCount)
{
    return Guarded([&] {
        return g_Playground.EditScans(nSymbology, nFirst > 0 ? static_cast<size_t>(nFirst) : 0,
                                      nCount > 0 ? static_cast<size_t>(nCount) : 0);
    });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_explain(const char* pExpression, size_t nExpression, const char* pLine,
                                             size_t nLine, int bEscapes, int nScan)
{
    return Guarded([&] {
        return g_Playground.Explain(Text(pExpression, nExpression), Text(pLine, nLine), bEscapes != 0,
                                    nScan > 0 ? static_cast<unsigned long long>(nScan) : 0);
    });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_commands()
{
    return Guarded([] { return CNrvPlayground::Commands(); });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_symbologies()
{
    return Guarded([] { return CNrvPlayground::Symbologies(); });
}

EMSCRIPTEN_KEEPALIVE const char* nrv_read_file(const char* pBytes, size_t nBytes, int bEscapes)
{
    return Guarded([&] { return CNrvPlayground::ReadFile(Text(pBytes, nBytes), bEscapes != 0); });
}

}  // extern "C"
