// The expression engine: value records, the operation base class and its
// parser, the literals, the command dictionary and every command.
#ifndef NRV_OPERATION_H
#define NRV_OPERATION_H

#include "NrvCommand.h"
#include "NrvCommandTable.h"
#include "NrvLiteralOperations.h"
#include "NrvOperationBase.h"
#include "NrvOperationDictionary.h"
#include "NrvOperationResult.h"

#include "NrvCaseCommands.h"
#include "NrvDecodedDataCommands.h"
#include "NrvEscapeCharacterCommand.h"
#include "NrvFindCommands.h"
#include "NrvGs1Commands.h"
#include "NrvInsertCommands.h"
#include "NrvReplaceCommands.h"
#include "NrvSubstringCommands.h"
#include "NrvTruncateAtIndexCommands.h"
#include "NrvTruncateCommands.h"

#endif  // NRV_OPERATION_H
