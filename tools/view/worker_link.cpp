#include "tools/view/worker_link.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QProcessEnvironment>
#include <utility>

namespace zm::view {
namespace {

constexpr int kHead = 4;
constexpr qsizetype kMostWords = 4000;  // bytes of stderr that are kept
constexpr int kLook = 100;              // milliseconds between two looks at the process
constexpr int kMostStopped = 5;         // looks in a row: one that goes on by itself is left alone
constexpr int kPing = 1000;             // milliseconds between questions that only ask for an answer
constexpr double kMostWork = 0.5;       // seconds of its processor time without a step

}  // namespace

WorkerLink::WorkerLink(QString program, QStringList verb, QStringList arguments, QObject* owner)
    : QObject(owner), m_process(new QProcess(QCoreApplication::instance())) {
    // Handed down to the worker alone, and gone with the last of the two.
    m_file = memfd_create("zenro-view", MFD_CLOEXEC);
    if (m_file >= 0 && ftruncate(m_file, static_cast<off_t>(tool::kSharedBytes)) == 0) {
        void* memory = mmap(nullptr, tool::kSharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, m_file, 0);
        m_memory = memory == MAP_FAILED ? nullptr : memory;
    }
    if (m_memory == nullptr) return;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    m_process->setProcessEnvironment(environment);
    m_process->setChildProcessModifier([file = m_file] { fcntl(file, F_SETFD, 0); });
    connect(m_process, &QProcess::readyReadStandardOutput, this, &WorkerLink::TakeBytes);
    connect(m_process, &QProcess::readyReadStandardError, this, [this] {
        m_words += m_process->readAllStandardError();
        m_words = m_words.right(kMostWords);
    });
    connect(m_process, &QProcess::finished, this,
            [this](int, QProcess::ExitStatus how) { End(how == QProcess::CrashExit); });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) End(false);
    });
    connect(&m_watch, &QTimer::timeout, this, &WorkerLink::Look);
    m_process->start(program, verb + QStringList{"--worker=" + QString::number(m_file)} + arguments);
}

WorkerLink::~WorkerLink() {
    // Its end takes as long as its memory is large, and the window does not wait for it.
    disconnect(m_process, nullptr, this, nullptr);
    if (m_process->state() == QProcess::NotRunning) {
        m_process->deleteLater();
    } else {
        connect(m_process, &QProcess::finished, m_process, &QObject::deleteLater);
        m_process->kill();
    }
    if (m_memory != nullptr) munmap(m_memory, tool::kSharedBytes);
    if (m_file >= 0) ::close(m_file);
}

void WorkerLink::End(bool crashed) {
    if (std::exchange(m_ended, true)) return;
    m_watch.stop();
    const auto asked = std::exchange(m_asked, {});
    emit Ended(crashed, m_process->exitCode(), QString::fromUtf8(m_words).trimmed());
}

void WorkerLink::Watch(int longestAnswer) {
    m_longestAnswer = longestAnswer;
    WatchOn();
}

void WorkerLink::WatchOn() {
    if (m_longestAnswer == 0 || m_ended || m_watch.isActive()) return;
    m_stopped = 0;
    m_worked = LifeOfProcess().worked;
    m_sincePing.start();
    m_watch.start(kLook);
}

// What the system knows of it: how long it is silent says nothing on a machine that is busy.
WorkerLink::Life WorkerLink::LifeOfProcess() const {
    QFile file("/proc/" + QString::number(processId()) + "/stat");
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');  // its name may hold blanks
    constexpr int kState = 0, kOwnTime = 11, kTimeInSystem = 12;
    if (fields.size() <= kTimeInSystem) return {};
    return {fields[kState] == "T",
            static_cast<double>(fields[kOwnTime].toLongLong() + fields[kTimeInSystem].toLongLong()) /
                static_cast<double>(sysconf(_SC_CLK_TCK))};
}

// While it reads it may work as long as it likes.
bool WorkerLink::WorksWithoutStep(double worked) {
    const quint32 steps = static_cast<tool::SharedHead*>(m_memory)->steps.load();
    if (!m_ready || std::exchange(m_steps, steps) != steps) m_worked = worked;
    return worked - m_worked >= kMostWork;
}

// Nothing is looked at while nothing is awaited: an idle window uses no processor.
void WorkerLink::Look() {
    if (!owes() && !m_pinged) return m_watch.stop();
    const Life life = LifeOfProcess();
    m_stopped = life.stopped ? m_stopped + 1 : 0;
    const bool silent = m_pinged && m_sincePing.elapsed() > m_longestAnswer;
    if (m_stopped >= kMostStopped || WorksWithoutStep(life.worked) || silent) return End(true);
    if (!m_ready || m_pinged || m_sincePing.elapsed() < kPing) return;
    m_pinged = true;
    Ask({{"do", "ping"}}, [this](const QJsonObject&) { m_pinged = false; });
    m_sincePing.start();
}

void WorkerLink::WantNumber(quint32 number) {
    static_cast<tool::SharedHead*>(m_memory)->wanted.store(number);
}

void WorkerLink::Send(const QJsonObject& message) {
    const QByteArray text = QJsonDocument(message).toJson(QJsonDocument::Compact);
    QByteArray head;
    for (int i = 0; i < kHead; ++i) head.append(static_cast<char>(text.size() >> (8 * i)));
    m_process->write(head + text);
    if (message["do"].toString() == "draw") m_drawing = message["number"].toInteger();
    WatchOn();
}

void WorkerLink::Ask(QJsonObject question, std::function<void(const QJsonObject&)> answered) {
    question["id"] = ++m_lastId;
    m_asked[m_lastId] = std::move(answered);
    Send(question);
}

QImage WorkerLink::Picture(int slot, QSize pixels) const {
    return {reinterpret_cast<const uchar*>(tool::PixelsOf(m_memory, slot)), pixels.width(), pixels.height(),
            4 * static_cast<qsizetype>(pixels.width()), QImage::Format_RGB32};
}

void WorkerLink::TakeBytes() {
    m_bytes += m_process->readAllStandardOutput();
    while (m_bytes.size() >= kHead) {
        qsizetype length = 0;
        for (int i = kHead; i-- > 0;) length = length << 8 | static_cast<unsigned char>(m_bytes[i]);
        if (m_bytes.size() - kHead < length) return;
        const QJsonObject message = QJsonDocument::fromJson(m_bytes.mid(kHead, length)).object();
        m_bytes.remove(0, kHead + length);
        TakeMessage(message);
    }
}

void WorkerLink::TakeMessage(const QJsonObject& message) {
    const QString what = message["is"].toString();
    if (what != "answer") {
        m_ready = m_ready || what == "ready";
        if (what == "painted" && (!message.contains("number") || message["number"].toInteger() == m_drawing))
            m_drawing = 0;
        emit Said(message);
        return;
    }
    const auto found = m_asked.find(message["id"].toInt());
    if (found == m_asked.end()) return;
    const auto answered = std::move(found->second);
    m_asked.erase(found);
    answered(message);
}

}  // namespace zm::view
