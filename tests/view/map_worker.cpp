#include "tests/view/map_worker.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zm::test {

using nlohmann::json;

MapWorker::MapWorker(const std::vector<std::string>& arguments) {
    const int file = memfd_create("picture", 0);
    EXPECT_EQ(ftruncate(file, static_cast<off_t>(tool::kSharedBytes)), 0);
    m_memory = mmap(nullptr, tool::kSharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, file, 0);
    int in[2], out[2];
    EXPECT_EQ(pipe2(in, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
    std::vector<std::string> all = {ZENRO_PROGRAM, "view", "--worker=" + std::to_string(file)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::vector<char*> texts;
    for (std::string& one : all) texts.push_back(one.data());
    texts.push_back(nullptr);
    m_process = fork();
    if (m_process == 0) {
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        setenv("ZENRO_LANGUAGE", "en", 1);  // whatever the machine speaks
        execv(texts[0], texts.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(file);
    m_to = in[1];
    m_from = out[0];
    m_reader.emplace(m_from);
}

MapWorker::~MapWorker() {
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    if (m_to >= 0) close(m_to);
    close(m_from);
    munmap(m_memory, tool::kSharedBytes);
}

void MapWorker::Send(const json& message) const {
    EXPECT_TRUE(tool::SendFrame(m_to, message.dump()));
}

json MapWorker::Await(const std::string& kind) {
    while (true) {
        while (const auto text = m_reader->Next()) {
            json message = json::parse(*text);
            if (message.at("is") == kind) return message;
            if (message.at("is") == "failed") {
                ADD_FAILURE() << *text;
                return json::object();
            }
        }
        pollfd file = {m_from, POLLIN, 0};
        if (poll(&file, 1, 60000) <= 0 || !m_reader->Take()) {
            ADD_FAILURE() << "the worker does not say \"" << kind << "\"";
            return json::object();
        }
    }
}

json MapWorker::Ask(json question) {
    question["id"] = 7;
    Send(question);
    return Await("answer");
}

void MapWorker::Want(double x, double y, double pixel, int width, int height, double scale, double rotation) {
    Head().wanted.store(++m_number);
    Send({{"do", "draw"},
          {"number", m_number},
          {"slot", m_number % 2},
          {"width", width},
          {"height", height},
          {"x", x},
          {"y", y},
          {"pixel", pixel},
          {"rotation", rotation},
          {"scale", scale},
          {"labels", 1}});
}

json MapWorker::Draw(double x, double y, double pixel, int width, int height, double scale, double rotation) {
    Want(x, y, pixel, width, height, scale, rotation);
    json painted;
    do painted = Await("painted");
    while (painted.contains("number") && painted.at("number") != m_number);
    EXPECT_TRUE(painted.value("whole", false)) << painted;
    return painted;
}

void MapWorker::CloseInput() {
    close(m_to);
    m_to = -1;
}

int MapWorker::Wait() {
    for (int i = 0; i < 600; ++i) {
        int status = 0;
        if (waitpid(m_process, &status, WNOHANG) == m_process) {
            m_process = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        usleep(100000);
    }
    return -1;
}

std::string MapWorker::LastWords() {
    while (m_reader->Take()) {
    }
    std::string text;
    while (const auto message = m_reader->Next()) text = json::parse(*message).value("text", "");
    return text;
}

}  // namespace zm::test
