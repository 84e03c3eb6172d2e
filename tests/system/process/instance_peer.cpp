// instance_peer [FOLDER]: says "first" and runs on, saying "activated" for each later start, or says
// "second" and ends.

#include "system/process/single_instance.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

void say(const char* word)
{
    std::puts(word);
    std::fflush(stdout);
}

class StandardErrorLog : public corvandi::SystemLog {
protected:
    void writeLine(const QString& line) override { std::fprintf(stderr, "%s\n", qPrintable(line)); }
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    StandardErrorLog log;
    const corvandi::SingleInstance instance(
        log, [] { say("activated"); }, QString::fromLocal8Bit(argv[1]));
    if (instance.role() == corvandi::InstanceRole::second) {
        say("second");
        return 0;
    }
    say("first");
    return QCoreApplication::exec();
}
