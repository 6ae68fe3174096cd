#include "framework/widgets/SessionClient.h"

#include <unistd.h>

#include <QGuiApplication>
#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "framework/widgets/UDisplay.h"

// Last, because their macros break Qt's headers.
#include <X11/ICE/ICElib.h>
#include <X11/SM/SMlib.h>

class SessionClient::Connection {
  public:
    explicit Connection(std::function<bool()> quit);
    ~Connection();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

  private:
    static void SaveYourself(SmcConn smc, SmPointer client, int saveType, Bool isShutdown, int interactStyle,
                             Bool isFast);
    static void Interact(SmcConn smc, SmPointer client);
    static void Die(SmcConn smc, SmPointer client);
    static void SaveComplete(SmcConn /*smc*/, SmPointer /*client*/) {}
    static void ShutdownCancelled(SmcConn smc, SmPointer client);

    void Read();
    // Tells the session manager the program's name, which it shows if the program cancels.
    void Introduce();
    // Ends the answer to SaveYourself.
    void Finish(bool agrees);

    std::function<bool()> mQuit;
    SmcConn mSmc = nullptr;
    std::unique_ptr<QSocketNotifier> mNotifier;
    bool mOwesAnswer = false;
};

SessionClient::Connection::Connection(std::function<bool()> quit) : mQuit(std::move(quit)) {
    SmcCallbacks callbacks = {
        {&SaveYourself, this}, {&Die, this}, {&SaveComplete, this}, {&ShutdownCancelled, this}};
    constexpr unsigned long kAll =
        SmcSaveYourselfProcMask | SmcDieProcMask | SmcSaveCompleteProcMask | SmcShutdownCancelledProcMask;
    std::array<char, 256> error = {};
    char* identity = nullptr;
    mSmc = SmcOpenConnection(nullptr, nullptr, SmProtoMajor, SmProtoMinor, kAll, &callbacks, nullptr,
                             &identity, static_cast<int>(error.size()), error.data());
    std::free(identity);
    if (mSmc == nullptr) {
        std::fprintf(stderr,
                     "The desktop's session manager cannot be reached (%s). Do not log out during a write.\n",
                     error.data());
        return;
    }
    Introduce();
    mNotifier = std::make_unique<QSocketNotifier>(IceConnectionNumber(SmcGetIceConnection(mSmc)),
                                                  QSocketNotifier::Read);
    QObject::connect(mNotifier.get(), &QSocketNotifier::activated, mNotifier.get(), [this] { Read(); });
}

SessionClient::Connection::~Connection() {
    if (mSmc != nullptr) {
        SmcCloseConnection(mSmc, 0, nullptr);
    }
}

void SessionClient::Connection::Read() {
    // If the session manager has gone, the library ends the process, which ExitGuard prevents.
    if (IceProcessMessages(SmcGetIceConnection(mSmc), nullptr, nullptr) ==
        IceProcessMessagesConnectionClosed) {
        mNotifier->setEnabled(false);
        mSmc = nullptr;
    }
}

void SessionClient::Connection::Introduce() {
    std::string name = QGuiApplication::applicationDisplayName().toStdString();
    std::string user = std::to_string(getuid());
    std::string command = program_invocation_name;
    // Whoever starts the session again has not asked for the cards to be opened.
    char restart = SmRestartNever;
    const auto value = [](std::string& text) {
        return SmPropValue{static_cast<int>(text.size()), text.data()};
    };
    std::array<SmPropValue, 4> values = {value(name), value(user), value(command), SmPropValue{1, &restart}};
    const auto property = [](const char* what, const char* type, SmPropValue& of) {
        return SmProp{const_cast<char*>(what), const_cast<char*>(type), 1, &of};
    };
    std::array<SmProp, 5> properties = {property(SmProgram, SmARRAY8, values[0]),
                                        property(SmUserID, SmARRAY8, values[1]),
                                        property(SmCloneCommand, SmLISTofARRAY8, values[2]),
                                        property(SmRestartCommand, SmLISTofARRAY8, values[2]),
                                        property(SmRestartStyleHint, SmCARD8, values[3])};
    std::array<SmProp*, properties.size()> list = {};
    for (std::size_t index = 0; index < list.size(); ++index) {
        list[index] = &properties[index];
    }
    SmcSetProperties(mSmc, static_cast<int>(list.size()), list.data());
}

void SessionClient::Connection::SaveYourself(SmcConn smc, SmPointer client, int /*saveType*/, Bool isShutdown,
                                             int interactStyle, Bool /*isFast*/) {
    auto& self = *static_cast<Connection*>(client);
    self.mOwesAnswer = true;
    if (isShutdown == False || self.mQuit()) {
        self.Finish(true);
    } else if (interactStyle == SmInteractStyleNone ||
               SmcInteractRequest(smc, SmDialogError, &Interact, client) == 0) {
        self.Finish(false);
    }
}

void SessionClient::Connection::Interact(SmcConn smc, SmPointer client) {
    auto& self = *static_cast<Connection*>(client);
    // Only a program that has been allowed to ask the user may cancel. The work that prevented it from
    // quitting may be over by now.
    SmcInteractDone(smc, self.mQuit() ? False : True);
    self.Finish(true);
}

void SessionClient::Connection::Die(SmcConn /*smc*/, SmPointer client) {
    static_cast<Connection*>(client)->mQuit();
}

void SessionClient::Connection::ShutdownCancelled(SmcConn /*smc*/, SmPointer client) {
    static_cast<Connection*>(client)->Finish(true);
}

void SessionClient::Connection::Finish(bool agrees) {
    if (std::exchange(mOwesAnswer, false)) {
        SmcSaveYourselfDone(mSmc, agrees ? True : False);
    }
}

void SessionClient::ReplaceQts() {
    QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
}

SessionClient::SessionClient(std::function<bool()> quit) {
    if (std::getenv("SESSION_MANAGER") != nullptr) {
        mConnection = std::make_unique<Connection>(std::move(quit));
    }
}

SessionClient::~SessionClient() {
    UDisplay::Use([this] { mConnection.reset(); });
    // If the session manager has gone, the library must not be called any more, so the connection is left
    // until the process ends.
    static_cast<void>(mConnection.release());
}
