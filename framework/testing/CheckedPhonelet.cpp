#include <testing/CheckedPhonelet.h>

#include <set>

#include <framework/PhoneletContext.h>

class CheckedPhonelet::Context final : public PhoneletContext {
public:
    Context(CheckedPhonelet& checked, PhoneletContext& context)
        : m_checked(checked)
        , m_context(context)
    {
    }

    const std::set<int>& timers() const { return m_timers; }

    Executable* getService(const std::string& name) override
    {
        check("getService()");
        return m_context.getService(name);
    }
    DisplayAPI::Display* getDisplay() override
    {
        check("getDisplay()");
        return m_context.getDisplay();
    }
    DisplayAPI::TranslatorIfc* getTranslator() override
    {
        check("getTranslator()");
        return m_context.getTranslator();
    }
    std::string getName() const override
    {
        check("getName()");
        return m_context.getName();
    }
    void timerEvent(int id) override
    {
        check("timerEvent()");
        m_context.timerEvent(id);
    }
    int createTimer(Phonelet* owner, unsigned ms) override
    {
        check("createTimer()");
        const bool own = owner == m_checked.m_phonelet.get();
        const int id = m_context.createTimer(own ? &m_checked : owner, ms);
        m_timers.insert(id);
        return id;
    }
    bool startTimer(int id) override
    {
        check("startTimer()");
        return m_context.startTimer(id);
    }
    bool stopTimer(int id) override
    {
        check("stopTimer()");
        return m_context.stopTimer(id);
    }
    bool resetTimer(int id) override
    {
        check("resetTimer()");
        return m_context.resetTimer(id);
    }
    bool deleteTimer(int id) override
    {
        check("deleteTimer()");
        m_timers.erase(id);
        return m_context.deleteTimer(id);
    }
    bool isTimerRunning(int id) const override
    {
        check("isTimerRunning()");
        return m_context.isTimerRunning(id);
    }
    void setPhoneletState(const std::string& name, int state) override
    {
        check("setPhoneletState()");
        m_context.setPhoneletState(name, state);
    }
    int getPhoneletState(const std::string& name) const override
    {
        check("getPhoneletState()");
        return m_context.getPhoneletState(name);
    }
    void requestFocus(Phonelet*) override
    {
        check("requestFocus()");
        m_context.requestFocus(&m_checked);
    }
    void releaseFocus(Phonelet*) override
    {
        check("releaseFocus()");
        m_context.releaseFocus(&m_checked);
    }
    void sleep(std::chrono::microseconds time) override
    {
        check("sleep()");
        m_context.sleep(time);
    }

private:
    void check(const char* call) const { m_checked.checkThread("phonelet", call); }

    CheckedPhonelet& m_checked;
    PhoneletContext& m_context;
    std::set<int> m_timers;
};

CheckedPhonelet::CheckedPhonelet(std::unique_ptr<Phonelet> phonelet, Complain complain)
    : m_phonelet(std::move(phonelet))
    , m_complain(std::move(complain))
{
}

CheckedPhonelet::~CheckedPhonelet()
{
    if (m_age == Age::Started)
        m_complain("telephone: deleted before stopPhonelet()");
}

void CheckedPhonelet::init(PhoneletContext* context)
{
    m_thread = std::this_thread::get_id();
    expect("init()", Age::Created);
    m_age = Age::Initialised;
    Phonelet::init(context);
    m_context = std::make_unique<Context>(*this, *context);
    m_phonelet->setPhoneletHandle(getPhoneletHandle());
    m_phonelet->init(m_context.get());
}

void CheckedPhonelet::startPhonelet()
{
    expect("startPhonelet()", Age::Initialised);
    m_age = Age::Started;
    m_phonelet->startPhonelet();
}

void CheckedPhonelet::stopPhonelet()
{
    checkThread("telephone", "stopPhonelet()");
    m_phonelet->stopPhonelet();
    stopped();
}

void CheckedPhonelet::shutdown()
{
    checkThread("telephone", "shutdown()");
    m_phonelet->shutdown();
    stopped();
}

std::string CheckedPhonelet::getInterfaces()
{
    checkThread("telephone", "getInterfaces()");
    return m_phonelet->getInterfaces();
}

void CheckedPhonelet::timerEvent(int id)
{
    expectEvent("timerEvent()");
    m_phonelet->timerEvent(id);
}

void CheckedPhonelet::hide()
{
    expectEvent("hide()");
    m_phonelet->hide();
}

void CheckedPhonelet::show()
{
    expectEvent("show()");
    m_phonelet->show();
}

void CheckedPhonelet::tab()
{
    expectEvent("tab()");
    m_phonelet->tab();
}

void CheckedPhonelet::pause()
{
    expectEvent("pause()");
    m_phonelet->pause();
}

void CheckedPhonelet::resume()
{
    expectEvent("resume()");
    m_phonelet->resume();
}

void CheckedPhonelet::localeChanged(const std::string& language)
{
    expectEvent("localeChanged()");
    m_phonelet->localeChanged(language);
}

void CheckedPhonelet::dateFormatChanged()
{
    expectEvent("dateFormatChanged()");
    m_phonelet->dateFormatChanged();
}

void CheckedPhonelet::timeFormatChanged()
{
    expectEvent("timeFormatChanged()");
    m_phonelet->timeFormatChanged();
}

void CheckedPhonelet::childGainedFocus(const std::string& child)
{
    expectEvent("childGainedFocus()");
    m_phonelet->childGainedFocus(child);
}

void CheckedPhonelet::childLostFocus(const std::string& child)
{
    expectEvent("childLostFocus()");
    m_phonelet->childLostFocus(child);
}

void CheckedPhonelet::expect(const char* call, Age age)
{
    checkThread("telephone", call);
    if (m_age != age)
        m_complain(std::string("telephone: ") + call + " out of order");
}

void CheckedPhonelet::expectEvent(const char* call)
{
    checkThread("telephone", call);
    if (m_age == Age::Stopped)
        m_complain(std::string("telephone: ") + call + " after stop");
    else if (m_age != Age::Started)
        m_complain(std::string("telephone: ") + call + " before startPhonelet()");
}

void CheckedPhonelet::stopped()
{
    if (m_age == Age::Stopped || !m_context)
        return;
    m_age = Age::Stopped;
    for (const int id : m_context->timers())
        m_complain("phonelet: timer " + std::to_string(id) + " left at stop");
}

void CheckedPhonelet::checkThread(const char* guilty, const char* call) const
{
    if (std::this_thread::get_id() != m_thread)
        m_complain(std::string(guilty) + ": " + call + " on another thread than init()");
}
