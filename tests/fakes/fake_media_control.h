// A media control interface that answers as the test says: commands without an entry succeed with an empty reply.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/media_control.h"

namespace quenlox {

class FakeMediaControl : public MediaControl {
  public:
    struct Answer {
        int code = 0;
        std::string reply;
    };
    std::vector<std::string> commands;
    std::map<std::string, Answer> answers;
    std::function<void()> onCommand;

    int sendString(const std::string& command, std::string* reply = nullptr) override {
        commands.push_back(command);
        if (onCommand) onCommand();
        const auto found = answers.find(command);
        if (reply) *reply = found == answers.end() ? std::string() : found->second.reply;
        return found == answers.end() ? 0 : found->second.code;
    }
    int count(const std::string& command) const {
        return static_cast<int>(std::count(commands.begin(), commands.end(), command));
    }
};

}  // namespace quenlox
