// gogo.dll as the program sees it. Loaded at run time; without it the converter does without encoding.
#pragma once

#include <cstdint>
#include <string>

#include "libraries/gogo/gogo.h"  // its numbers

namespace quenlox {

class Gogo {
  public:
    virtual ~Gogo() = default;
    virtual bool available() = 0;  // the library is there and answers
    virtual int MPGE_getUnitStatesVB(std::int32_t& state) = 0;
    virtual int MPGE_initializeWorkVB() = 0;
    virtual int MPGE_setConfigureVB(std::int32_t item, std::int32_t value, const std::string& text) = 0;
    virtual int MPGE_detectConfigureVB() = 0;
    virtual int MPGE_getConfigureVB(std::int32_t item, std::int32_t& value) = 0;
    virtual int MPGE_processFrameVB() = 0;  // 0 more to do, 1 finished, anything else an error
    virtual int MPGE_closeCoderVB() = 0;
    virtual int MPGE_endCoderVB() = 0;
    virtual std::string version() = 0;
};

}  // namespace quenlox
