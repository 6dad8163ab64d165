#include "ChildProgram.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

Error systemError(const std::string& what)
{
    return {ErrorCode::Failed, what + ": " + std::strerror(errno) + "."};
}

struct FileActions {
    FileActions() { posix_spawn_file_actions_init(&actions); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    posix_spawn_file_actions_t actions;
};

} // namespace

void ChildProgram::Descriptor::take(int number)
{
    close();
    m_number = number;
}

void ChildProgram::Descriptor::close()
{
    if (m_number >= 0)
        ::close(m_number);
    m_number = -1;
}

std::filesystem::path ChildProgram::besideUs(const char* name)
{
    std::error_code failed;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", failed);
    return failed ? std::filesystem::path(name) : self.parent_path() / name;
}

Result<std::unique_ptr<ChildProgram>> ChildProgram::start(const std::filesystem::path& program,
                                                          const std::vector<std::string>& arguments,
                                                          Talk talk, const std::filesystem::path& output)
{
    std::unique_ptr<ChildProgram> child(new ChildProgram);
    child->m_name = program.filename().string();

    // A pair of sockets, not a pipe: writing to a program that has ended is then an error, not a signal.
    std::array<int, 2> channel{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, channel.data()) != 0)
        return systemError("\"" + child->m_name + "\" cannot be talked to");
    child->m_channel.take(channel[0]);
    const Descriptor theirs(channel[1]);
    child->m_errors.take(::memfd_create("errors", MFD_CLOEXEC));

    FileActions files;
    constexpr mode_t privately = 0600;
    if (talk == Talk::WeRead) {
        posix_spawn_file_actions_addopen(&files.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&files.actions, theirs.get(), STDOUT_FILENO);
    } else {
        posix_spawn_file_actions_adddup2(&files.actions, theirs.get(), STDIN_FILENO);
        posix_spawn_file_actions_addopen(&files.actions, STDOUT_FILENO, output.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, privately);
    }
    posix_spawn_file_actions_adddup2(&files.actions, child->m_errors.get(), STDERR_FILENO);

    std::vector<std::string> words = arguments;
    words.insert(words.begin(), program.string());
    std::vector<char*> argv;
    for (auto& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    errno = posix_spawn(&child->m_process, program.c_str(), &files.actions, nullptr, argv.data(), environ);
    if (errno != 0) {
        child->m_process = -1;
        return systemError("\"" + program.string() + "\" cannot be started");
    }
    return child;
}

ChildProgram::~ChildProgram()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
}

Result<std::optional<std::string>> ChildProgram::readLine(std::size_t limit)
{
    std::size_t searched = 0;
    for (;;) {
        const auto end = m_buffer.find('\n', searched);
        if (end != std::string::npos) {
            std::string line = m_buffer.substr(0, end);
            m_buffer.erase(0, end + 1);
            return std::optional(std::move(line));
        }
        searched = m_buffer.size();
        if (searched > limit)
            return Error{ErrorCode::Malformed, "\"" + m_name + "\" sent a line that is too long."};
        if (m_atEnd)
            return std::optional<std::string>();
        std::array<char, 65536> bytes;
        const auto count = ::read(m_channel.get(), bytes.data(), bytes.size());
        // A signal ends the waiting too: it is how users cancel.
        if (count < 0)
            return systemError("\"" + m_name + "\" cannot be read");
        m_buffer.append(bytes.data(), static_cast<std::size_t>(count));
        m_atEnd = count == 0;
    }
}

Result<void> ChildProgram::write(const std::string& text)
{
    for (std::size_t sent = 0; sent < text.size();) {
        const auto count = ::send(m_channel.get(), text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EPIPE) {
            const auto ended = finish();
            return ended ? Error{ErrorCode::Failed, "\"" + m_name + "\" stopped too early."} : ended.error();
        }
        if (count < 0 && errno != EINTR)
            return systemError("\"" + m_name + "\" cannot be written to");
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return {};
}

Result<void> ChildProgram::finish()
{
    m_channel.close();
    if (m_process < 0)
        return {};
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return {};
    if (WIFSIGNALED(status))
        return Error{ErrorCode::Failed,
                     "\"" + m_name + "\" crashed (" + ::strsignal(WTERMSIG(status)) + ")."};
    const auto said = saidOnError();
    return Error{ErrorCode::Malformed, said.empty() ? "\"" + m_name + "\" failed." : said};
}

std::string ChildProgram::saidOnError() const
{
    std::string said(4096, '\0');
    const auto count = ::pread(m_errors.get(), said.data(), said.size(), 0);
    said.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    while (!said.empty() && said.back() == '\n')
        said.pop_back();
    return said;
}
