// What both sides know of an entry's line: what it holds, how its value is written, and what was
// taken from it. So any thread takes what is half typed at once, without asking the server. Every
// call holds a mutex for a moment.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>

class LineText {
public:
    // How a value is written: in full where the keyboard is, so that nothing is lost when it is
    // edited or copied, and briefly elsewhere.
    struct Writing {
        Writing(const char* text) : full(text), brief(text) {}             // NOLINT: a text
        Writing(std::string text) : full(std::move(text)), brief(full) {}  // NOLINT: is a writing
        Writing(std::string inFull, std::string inBrief)
            : full(std::move(inFull)), brief(std::move(inBrief)) {}

        std::string full;
        std::string brief;
    };

    // --- Any thread ---
    // A Replace is on its way to the server: nothing is taken from the line until it has come.
    void ExpectReplace();
    // What the user has typed and nobody has taken; an answer will come.
    [[nodiscard]] std::optional<std::string> Take();

    // --- The server's thread ---
    // What the line holds, as far as the user changes it; the other calls know what they write.
    void LineIs(std::string text);
    // There is no line any more.
    void LineIsGone();
    // What the line holds when nothing is the user's.
    [[nodiscard]] std::string Written() const;
    // The line holds something of the user's that nobody has taken.
    [[nodiscard]] bool IsPending() const;

    // The expected one: the line is written like this, whatever was in it.
    void Replace(const Writing& writing, bool isFull);
    // The user gives up what is in the line.
    void Restore(bool isFull);
    // The value is written like this now. As for all that follow: true if the line must be written.
    // `isMarked`: the line holds what was refused.
    bool Show(const Writing& writing, bool isFull, bool isMarked);
    // What was taken is written like this.
    bool Accept(const Writing& writing, bool isFull);
    bool KeyboardComes(bool isMarked);
    bool KeyboardGoes(bool isMarked);

    // What was taken is invalid. True if the line must be marked: the user has finished it.
    bool Refuse(const Writing& writing);
    // What was refused is pending again.
    void Insist();

    void Typed(std::string text);
    enum class Finished { kPending, kToBeWritten, kNothing };
    Finished FinishTyping(bool isFull, bool isMarked);

private:
    [[nodiscard]] const std::string& Writes() const {
        return isFull_ ? writing_.full : writing_.brief;
    }
    [[nodiscard]] bool Pends() const { return line_ != Writes() && (!taken_ || line_ != *taken_); }
    void Write(bool isFull);

    mutable std::mutex mutex_;
    Writing writing_{""};
    bool isFull_ = false;  // in the line: the full text
    std::string line_;
    std::optional<std::string> taken_;  // what the line still holds of the user's, or of a refusal
    int unanswered_ = 0;                // texts that were taken
    int replaces_ = 0;                  // that are expected
    bool isTyping_ = false;  // the user has not finished, even if what is there was taken
    bool isGone_ = false;
};
