// --list-commands: the commands of the library's dictionary.
#ifndef NRV_EDIT_COMMAND_LIST_H
#define NRV_EDIT_COMMAND_LIST_H

// Prints one line per command: its name, the kind of each parameter and the
// kind of its result. Returns false when a command could not be described.
bool PrintCommandList();

#endif  // NRV_EDIT_COMMAND_LIST_H
