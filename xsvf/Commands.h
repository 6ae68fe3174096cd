#pragma once

// One handler per XSVF command.
//
// A handler is called with its opcode in the record, reads its operands from the image, and returns its error
// code, which it also stores in iResult unless it is 0.

#include <cstdint>

#include "xsvf/StateRecord.h"

using XsvfHandler = int32_t (*)(tagSXsvfInfo* info);

// The handlers by opcode; all higher opcodes are illegal commands too.
extern const XsvfHandler xsvf_pfDoCmd[kXsvfOpcodes];

int32_t xsvfDoIllegalCmd(tagSXsvfInfo* info);
int32_t xsvfDoXCOMPLETE(tagSXsvfInfo* info);
int32_t xsvfDoXTDOMASK(tagSXsvfInfo* info);
int32_t xsvfDoXSIR(tagSXsvfInfo* info);
int32_t xsvfDoXSDR(tagSXsvfInfo* info);
int32_t xsvfDoXRUNTEST(tagSXsvfInfo* info);
int32_t xsvfDoXREPEAT(tagSXsvfInfo* info);
int32_t xsvfDoXSDRSIZE(tagSXsvfInfo* info);
int32_t xsvfDoXSDRTDO(tagSXsvfInfo* info);
int32_t xsvfDoXSETSDRMASKS(tagSXsvfInfo* info);
int32_t xsvfDoXSDRINC(tagSXsvfInfo* info);
int32_t xsvfDoXSDRBCE(tagSXsvfInfo* info);     // XSDRB, XSDRC and XSDRE
int32_t xsvfDoXSDRTDOBCE(tagSXsvfInfo* info);  // XSDRTDOB, XSDRTDOC and XSDRTDOE
int32_t xsvfDoXSTATE(tagSXsvfInfo* info);
int32_t xsvfDoXENDXR(tagSXsvfInfo* info);  // XENDIR and XENDDR
