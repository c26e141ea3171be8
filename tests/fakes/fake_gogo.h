// An encoder of a given number of frames that remembers its configuration.
#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "platform/gogo.h"

namespace quenlox {

class FakeGogo : public Gogo {
  public:
    std::vector<std::string> calls;
    std::vector<std::tuple<int, int, std::string>> configuration;  // item, value, text
    bool there = true;
    int initialiseResult = 0;
    int detectResult = 0;
    int frames = 3;        // processFrame gives 1 with the last
    int failingFrame = 0;  // this one, counted from 1, gives 2

    bool available() override { return there; }
    int MPGE_getUnitStatesVB(std::int32_t& state) override {
        state = 0;
        return there ? 0 : 1;
    }
    int MPGE_initializeWorkVB() override { return note("initialise", initialiseResult); }
    int MPGE_setConfigureVB(std::int32_t item, std::int32_t value, const std::string& text) override {
        configuration.emplace_back(item, value, text);
        return 0;
    }
    int MPGE_detectConfigureVB() override { return note("detect", detectResult); }
    int MPGE_getConfigureVB(std::int32_t item, std::int32_t& value) override {
        if (item != 15) return 1;
        value = frames;
        return 0;
    }
    int MPGE_processFrameVB() override {
        ++done_;
        if (done_ == failingFrame) return note("frame", 2);
        return note("frame", done_ >= frames ? 1 : 0);
    }
    int MPGE_closeCoderVB() override { return note("close", 0); }
    int MPGE_endCoderVB() override { return note("end", 0); }
    std::string version() override { return "1.0.0"; }

  private:
    int note(const char* call, int result) {
        calls.emplace_back(call);
        return result;
    }
    int done_ = 0;
};

}  // namespace quenlox
