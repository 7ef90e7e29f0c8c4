#include "platform/playback/SdlDevice.h"

#include <algorithm>
#include <atomic>

#define SDL_MAIN_HANDLED
#include <SDL.h>

namespace tonequill {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

namespace {

constexpr int kBlockFrames = 1'024; // 21 ms
constexpr auto kPatience = 1s;      // with a sound server that doesn't answer
constexpr auto kLookEvery = 200ms;  // at a device that is open
constexpr auto kIdleTime = 5s;      // until a device that is silent is closed
constexpr auto kStallTime = 5s;     // without a call until a device is taken for lost: wireless ones wake slowly

static_assert(sizeof(StereoFrame) == 2 * sizeof(float));

// SDL is started and ended by one thread at a time, even if one of them hangs in
// a sound server and its device has been given up.
std::mutex sdlMutex;

} // namespace

// What the keeper's thread and the device's keep alive.
class SdlDevice::Body {
public:
    bool start(const std::shared_ptr<PlaybackVoice>& voice);
    void remove(const std::shared_ptr<PlaybackVoice>& voice);
    double heardFrame();
    void keep();
    bool quit();

private:
    enum class State { closed, busy, open };

    static void fill(void* body, Uint8* bytes, int size);
    void fill(std::span<StereoFrame> block);
    bool isUsable() const;
    void open(std::unique_lock<std::mutex>& lock);
    void close(std::unique_lock<std::mutex>& lock);
    void dropLost();
    bool dropSilent();

    mutable std::mutex m_mutex; // never held while SDL is asked for something that can take time
    std::condition_variable m_wake;
    std::condition_variable m_answer;
    State m_state = State::closed;
    SDL_AudioDeviceID m_id = 0;
    unsigned m_asked = 0; // how often the device was asked for
    unsigned m_answered = 0;
    SteadyClock::time_point m_lastSound;
    bool m_isQuitting = false;
    bool m_hasQuit = false;

    mutable std::mutex m_soundMutex; // of the device's thread; may be taken under the other
    std::vector<std::shared_ptr<PlaybackVoice>> m_voices;
    DeviceClock m_clock{PlaybackStream::kFormat.sampleRate};
    SteadyClock::time_point m_lastFill;
};

bool SdlDevice::Body::start(const std::shared_ptr<PlaybackVoice>& voice)
{
    std::unique_lock lock(m_mutex);
    if (!isUsable()) {
        if (m_asked != m_answered)
            return false; // it hangs
        const unsigned asked = ++m_asked;
        m_wake.notify_all();
        m_answer.wait_for(lock, kPatience, [&] { return m_answered == asked; });
        if (m_state != State::open)
            return false;
    }
    m_lastSound = SteadyClock::now();
    voice->play(heardFrame());
    const std::lock_guard sound(m_soundMutex);
    if (!std::ranges::count(m_voices, voice))
        m_voices.push_back(voice);
    return true;
}

void SdlDevice::Body::remove(const std::shared_ptr<PlaybackVoice>& voice)
{
    const std::lock_guard sound(m_soundMutex);
    std::erase(m_voices, voice);
}

double SdlDevice::Body::heardFrame()
{
    const std::lock_guard sound(m_soundMutex);
    return m_clock.heardFrame(SteadyClock::now());
}

// The device's thread: no memory, no file, no wait for one who has either.
void SdlDevice::Body::fill(void* body, Uint8* bytes, int size)
{
    static_cast<Body*>(body)->fill({reinterpret_cast<StereoFrame*>(bytes), static_cast<std::size_t>(size) / sizeof(StereoFrame)});
}

void SdlDevice::Body::fill(std::span<StereoFrame> block)
{
    std::ranges::fill(block, StereoFrame());
    const std::lock_guard sound(m_soundMutex);
    m_lastFill = SteadyClock::now();
    for (const auto& voice : m_voices)
        voice->mixInto(block, m_clock.takenFrames());
    m_clock.take(static_cast<qint64>(block.size()), m_lastFill);
}

bool SdlDevice::Body::isUsable() const
{
    if (m_state != State::open || SDL_GetAudioDeviceStatus(m_id) == SDL_AUDIO_STOPPED)
        return false;
    const std::lock_guard sound(m_soundMutex);
    return SteadyClock::now() - m_lastFill < kStallTime;
}

void SdlDevice::Body::open(std::unique_lock<std::mutex>& lock)
{
    m_state = State::busy;
    lock.unlock();
    std::unique_lock sdl(sdlMutex);
    SDL_SetMainReady();
    // The program's signals are not SDL's business.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_APP_NAME, "Tonequill");
    SDL_AudioDeviceID id = 0;
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) == 0) {
        SDL_AudioSpec wanted = {};
        wanted.freq = static_cast<int>(PlaybackStream::kFormat.sampleRate);
        wanted.format = AUDIO_F32SYS;
        wanted.channels = static_cast<Uint8>(PlaybackStream::kFormat.channelCount);
        wanted.samples = kBlockFrames;
        wanted.callback = &Body::fill;
        wanted.userdata = this;
        id = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
        if (id == 0)
            SDL_QuitSubSystem(SDL_INIT_AUDIO); // the next try may find another sound server
    }
    {
        const std::lock_guard sound(m_soundMutex);
        m_lastFill = SteadyClock::now();
    }
    if (id != 0)
        SDL_PauseAudioDevice(id, 0);
    sdl.unlock();
    lock.lock();
    m_id = id;
    m_state = id != 0 ? State::open : State::closed;
    m_lastSound = SteadyClock::now();
}

void SdlDevice::Body::close(std::unique_lock<std::mutex>& lock)
{
    if (m_state != State::open)
        return;
    m_state = State::busy;
    lock.unlock();
    {
        const std::lock_guard sdl(sdlMutex);
        SDL_CloseAudioDevice(m_id);
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }
    lock.lock();
    m_state = State::closed;
}

void SdlDevice::Body::dropLost()
{
    const std::lock_guard sound(m_soundMutex);
    for (const auto& voice : m_voices)
        voice->pause();
    m_voices.clear();
}

// True if nothing has sounded for a while.
bool SdlDevice::Body::dropSilent()
{
    const std::lock_guard sound(m_soundMutex);
    std::erase_if(m_voices, [](const auto& voice) { return !voice->isActive(); });
    const auto now = SteadyClock::now();
    if (!m_voices.empty())
        m_lastSound = now;
    return now - m_lastSound > kIdleTime;
}

void SdlDevice::Body::keep()
{
    std::unique_lock lock(m_mutex);
    const auto isCalled = [this] { return m_isQuitting || m_asked != m_answered; };
    while (!m_isQuitting) {
        if (m_state == State::open)
            m_wake.wait_for(lock, kLookEvery, isCalled);
        else
            m_wake.wait(lock, isCalled);
        if (m_isQuitting)
            break;
        if (m_state == State::open && !isUsable()) {
            dropLost();
            close(lock);
        } else if (m_state == State::open && dropSilent() && m_asked == m_answered) {
            close(lock);
        }
        if (const unsigned asked = m_asked; asked != m_answered) {
            if (m_state != State::open)
                open(lock);
            m_answered = asked;
            m_answer.notify_all();
        }
    }
    dropLost();
    close(lock);
    SDL_TLSCleanup(); // this thread isn't one of SDL's, which would do it by itself
    m_hasQuit = true;
    m_answer.notify_all();
}

bool SdlDevice::Body::quit()
{
    std::unique_lock lock(m_mutex);
    m_isQuitting = true;
    m_wake.notify_all();
    return m_answer.wait_for(lock, kPatience, [this] { return m_hasQuit; });
}

SdlDevice::SdlDevice() : m_body(std::make_shared<Body>()), m_keeper([body = m_body] { body->keep(); })
{}

SdlDevice::~SdlDevice()
{
    if (m_body->quit())
        m_keeper.join();
    else
        m_keeper.detach();
}

bool SdlDevice::start(const std::shared_ptr<PlaybackVoice>& voice)
{
    return m_body->start(voice);
}

void SdlDevice::remove(const std::shared_ptr<PlaybackVoice>& voice)
{
    m_body->remove(voice);
}

double SdlDevice::heardFrame() const
{
    return m_body->heardFrame();
}

} // namespace tonequill
