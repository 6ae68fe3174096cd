#include "linux/agent/Journal.h"

#include <cstdio>

#include "files/PrintableText.h"

void journal(const std::string& sentences) {
    std::fprintf(stderr, "%s\n", files::printable(sentences).c_str());
}
