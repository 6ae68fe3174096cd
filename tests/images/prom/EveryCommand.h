#pragma once

// A listing with every command, written as a person would, that plays on a card that answers as it expects.

inline constexpr const char* everyCommand = R"(; by hand
XREPEAT 0x02
XENDIR Pause-IR
XENDDR Pause-DR

XSTATE Run-Test/Idle
XRUNTEST 7
XSIR 0 0x0          ; nothing but the wait
XSIR 13 0x1FDF
XRUNTEST 0
XSIR 13 0x1FFF
  XSDRSIZE 0
XSDR 0x0
XSDRSIZE 0x0C
0000: XTDOMASK 0xFFF
XSDRTDO 0x1 0x0A5F
XRUNTEST 3
XSDR 0xabc
XENDIR Run-Test/Idle
XSIR 5 0x1F
XSETSDRMASKS 0x0001 0x0F12
XSDRINC 0x0FF 0x01 0x3F 0x2A
XSDRINC 0x0
XSDRB 0x123
XSDRC 0x0456
XSDRE 0x789
XSDRTDOB 0x123 0x321
XSTATE Pause-DR
XSDRTDOC 0x456 0x654
XSDRTDOE 0x789 0x987
XENDDR Run-Test/Idle
XSDRTDO 0x0 0x0
XSTATE Shift-IR
XSTATE Pause-IR
XSTATE Shift-DR
XSTATE Test-Logic-Reset
XSTATE Shift-DR
XSIR 13 0x1FFF
XCOMPLETE
)";
