// A program that runs beside the telephone: its standard input and output are ours, its errors are
// collected. It is ended when the object goes.

#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "app/Result.h"

class ChildProgram {
public:
    enum class Talk { WeRead, WeWrite };

    // What we do not read goes into `output`, which is created.
    static Result<std::unique_ptr<ChildProgram>> start(const std::filesystem::path& program,
                                                       const std::vector<std::string>& arguments, Talk talk,
                                                       const std::filesystem::path& output = {});
    // The path of a program that is installed beside this one.
    static std::filesystem::path besideUs(const char* name);

    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    // The next line of its output; nothing at the end. A line longer than `limit` bytes is an error.
    Result<std::optional<std::string>> readLine(std::size_t limit);
    Result<void> write(const std::string& text);

    // Waits for its end. Anything but exit code 0 is an error with what it said.
    Result<void> finish();

private:
    ChildProgram() = default;

    class Descriptor {
    public:
        explicit Descriptor(int number = -1)
            : m_number(number)
        {
        }
        ~Descriptor() { close(); }
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        void take(int number);
        void close();
        int get() const { return m_number; }

    private:
        int m_number;
    };

    std::string saidOnError() const;

    std::string m_name;
    pid_t m_process = -1;
    Descriptor m_channel;
    Descriptor m_errors;
    std::string m_buffer;
    bool m_atEnd = false;
};
