// --list-commands: the commands of the library's command table.
#ifndef NRV_EDIT_COMMAND_LIST_H
#define NRV_EDIT_COMMAND_LIST_H

// Prints each command with its parameters' names and kinds, the kind of its
// result, and its summary on the line below.
bool PrintCommandList();

#endif  // NRV_EDIT_COMMAND_LIST_H
