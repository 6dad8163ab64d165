// Stands between a telephone and a phonelet, and says which of them breaks the rules:
//   telephone: calls on another thread than init(), out of order, before start or after stop;
//   phonelet:  timers left at stop, calls of its context on another thread.
//
// A complaint is a sentence that begins with the guilty side: "telephone: show() before startPhonelet()".
// The call is passed on all the same.

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <framework/Phonelet.h>

class CheckedPhonelet final : public Phonelet {
public:
    using Complain = std::function<void(const std::string& sentence)>;

    CheckedPhonelet(std::unique_ptr<Phonelet> phonelet, Complain complain);
    ~CheckedPhonelet() override;

    Phonelet& inner() { return *m_phonelet; }

    void init(PhoneletContext* context) override;
    void shutdown() override;
    void timerEvent(int id) override;
    std::string getInterfaces() override;
    void startPhonelet() override;
    void stopPhonelet() override;
    void hide() override;
    void show() override;
    void tab() override;
    void pause() override;
    void resume() override;
    void localeChanged(const std::string& language) override;
    void dateFormatChanged() override;
    void timeFormatChanged() override;
    void childGainedFocus(const std::string& child) override;
    void childLostFocus(const std::string& child) override;

private:
    class Context;
    enum class Age { Created, Initialised, Started, Stopped };

    void expect(const char* call, Age age);
    void expectEvent(const char* call);
    void stopped();
    void checkThread(const char* guilty, const char* call) const;

    // The phonelet keeps the context: it goes first.
    std::unique_ptr<Context> m_context;
    std::unique_ptr<Phonelet> m_phonelet;
    const Complain m_complain;
    Age m_age = Age::Created;
    std::thread::id m_thread;
};
