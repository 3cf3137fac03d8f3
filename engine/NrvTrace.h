// Where the parser's trace lines go: a host's own log. The parser writes a
// line for each step of a parse (an error line when the parse fails there);
// nothing is formatted while no sink is installed.
#ifndef NRV_TRACE_H
#define NRV_TRACE_H

// Receives every finished trace line of the parser. bError marks error lines.
typedef void (*PFNNRVTRACE)(bool bError, const char* pszLine, void* pContext);

// Installs the calling thread's trace sink: lines of parses on this thread
// go to pfnTrace with pContext, and only they. Null (the default) switches
// tracing off.
void NrvSetTraceCallback(PFNNRVTRACE pfnTrace, void* pContext);

#endif  // NRV_TRACE_H
