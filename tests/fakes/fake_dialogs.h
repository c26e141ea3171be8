// Dialogs that answer at once with what the test has laid ready, and remember what was asked.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace quenlox {

class FakeDialogs : public Dialogs {
  public:
    struct Message {
        std::string text;
        MessageIcon icon;
        std::string title;
    };
    std::vector<Message> messages;
    std::vector<std::string> questions;
    std::vector<FileDialog> fileDialogs;
    std::deque<bool> confirms;                           // none left: no
    std::deque<std::optional<bool>> confirmsOrCancels;   // none left: cancelled
    std::deque<std::optional<std::string>> fileAnswers;  // none left: cancelled
    std::deque<std::vector<std::string>> filesAnswers;
    std::deque<std::optional<std::string>> folderAnswers;
    std::deque<std::optional<std::string>> textAnswers;

    void message(const std::string& text, MessageIcon icon, const std::string& title) override {
        messages.push_back({text, icon, title});
    }
    bool confirm(const std::string& question, const std::string&) override {
        questions.push_back(question);
        return take(confirms, false);
    }
    bool confirmLoss(const std::string& question, const std::string& title) override {
        return confirm(question, title);
    }
    std::optional<bool> confirmOrCancel(const std::string& question, const std::string&) override {
        questions.push_back(question);
        return take(confirmsOrCancels, std::optional<bool>());
    }
    std::optional<std::string> openFile(const FileDialog& dialog) override { return file(dialog); }
    std::optional<std::string> saveFile(const FileDialog& dialog) override { return file(dialog); }
    std::vector<std::string> openFiles(const FileDialog& dialog) override {
        fileDialogs.push_back(dialog);
        return take(filesAnswers, std::vector<std::string>());
    }
    std::optional<std::string> chooseFolder(const std::string&, const std::string&) override {
        return take(folderAnswers, std::optional<std::string>());
    }
    std::optional<std::string> chooseFont(const std::string&) override {
        return take(textAnswers, std::optional<std::string>());
    }
    std::optional<std::string> inputText(const std::string& prompt, const std::string&, const std::string&) override {
        questions.push_back(prompt);
        return take(textAnswers, std::optional<std::string>());
    }

  private:
    std::optional<std::string> file(const FileDialog& dialog) {
        fileDialogs.push_back(dialog);
        return take(fileAnswers, std::optional<std::string>());
    }
    template <class T>
    static T take(std::deque<T>& answers, T otherwise) {
        if (answers.empty()) return otherwise;
        T answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }
};

}  // namespace quenlox
