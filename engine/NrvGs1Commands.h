#ifndef NRV_GS1_COMMANDS_H
#define NRV_GS1_COMMANDS_H

// The GS1 set: element strings read out of a GS1 message by the library's
// one reader (NrvGs1.h), which checks the whole message first. A text that
// is not a valid GS1 message fails with NRV_ERR_GS1_INVALID.

#include "NrvCommand.h"

class CNrvOperationGS1Element : public CNrvCommand<CNrvOperationGS1Element> {
public:
    using CNrvCommand::CNrvCommand;
    // The data of the first element whose AI is Ai's text ("01" keeps its
    // zero: an integer literal's text is kept as written); the empty text
    // when the message holds none. NRV_ERR_OUT_OF_RANGE for an ai that no
    // AI of GS1 is.
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text, CNrvOperationResult& Ai) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

class CNrvOperationGS1HumanReadable : public CNrvCommand<CNrvOperationGS1HumanReadable> {
public:
    using CNrvCommand::CNrvCommand;
    // "(01)09501101530003(17)141120(10)AB-123": each AI in parentheses, then
    // its data, without the separators and the symbology identifier.
    NRVRESULT Compute(CNrvOperationResult& Result, CNrvOperationResult& Text) const;
    std::string DescribeFailure(NRVRESULT nCode, CNrvOperationResult* pParameters) const override;
};

// Each command's factory by the command's name.
using CNrvOperationFactoryGS1Element = CNrvOperationFactoryOf<CNrvOperationGS1Element>;
using CNrvOperationFactoryGS1HumanReadable = CNrvOperationFactoryOf<CNrvOperationGS1HumanReadable>;

// Why a text is not a valid GS1 message, said where it is: the reader's
// sentence, then the culprit's place in the text, and its bytes when the
// text is the scan itself ("AI (01): check digit 4, expected 3, at byte 18
// of the scan: \"4\""). Empty when the text is a valid message.
std::string NrvDescribeGs1Fault(const char* pText, size_t nLength, const CNrvDataEditingProfile* pProfile);

#endif  // NRV_GS1_COMMANDS_H
