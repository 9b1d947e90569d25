#include "Platform/Interface/Server/LocalRequests.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <algorithm>
#include <map>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/RecordStream.h"
#include "Platform/Interface/Server/WindowServer.h"

namespace {

// What the two sides say beside the request and its answer.
constexpr uint32 kTaken = FourCC("take");  // the server: shall I?
constexpr uint32 kGoOn = FourCC("goon");   // the asker: yes

// A connection that has not come to its request by then is given up.
constexpr int kPatienceMilliseconds = 5000;

}  // namespace

class LocalRequests::Part {
public:
    Part(const std::string& path, const BMessenger& target, uint32 what);
    ~Part();

    [[nodiscard]] bool IsListening() const { return server_.isListening(); }
    void Answer(int32 number, const BMessage& answer);

    static Part* current;  // the server's thread

private:
    struct Connection {
        QLocalSocket* socket = nullptr;
        QByteArray arrived;
        BMessage request;
        bool isOffered = false;  // the request has come
        bool isTaken = false;    // and was delivered
    };

    void Accept();
    void Read(int32 number);
    void Handle(int32 number, Connection* connection, const BMessage& record);

    const BMessenger target_;
    const uint32 what_;
    int32 last_ = 0;
    std::map<int32, Connection> connections_;
    QLocalServer server_;
};

LocalRequests::Part* LocalRequests::Part::current = nullptr;

LocalRequests::Part::Part(const std::string& path, const BMessenger& target, uint32 what)
    : target_(target), what_(what) {
    const QString name = QString::fromStdString(path);
    QLocalServer::removeServer(name);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { Accept(); });
    server_.listen(name);
    current = this;
}

LocalRequests::Part::~Part() {
    current = nullptr;
    // The server deletes its sockets, which must find nothing to remove here.
    for (const auto& [number, connection] : connections_)
        connection.socket->disconnect();
}

void LocalRequests::Part::Accept() {
    while (QLocalSocket* const socket = server_.nextPendingConnection()) {
        const int32 number = ++last_;
        connections_[number].socket = socket;
        QObject::connect(socket, &QLocalSocket::readyRead, socket, [=, this] { Read(number); });
        QObject::connect(socket, &QLocalSocket::disconnected, socket, [=, this] {
            connections_.erase(number);
            socket->deleteLater();
        });
        QTimer::singleShot(kPatienceMilliseconds, socket, [=, this] {
            if (const auto found = connections_.find(number);
                found != connections_.end() && !found->second.isTaken)
                socket->abort();
        });
        Read(number);
    }
}

void LocalRequests::Part::Read(int32 number) {
    const auto found = connections_.find(number);
    if (found == connections_.end()) return;
    Connection& connection = found->second;
    connection.arrived += connection.socket->readAll();
    for (BMessage record;;) {
        switch (RecordStream::Take(&connection.arrived, &record)) {
            case RecordStream::Found::kRecord:
                Handle(number, &connection, record);
                break;
            case RecordStream::Found::kTooLittle:
                return;
            case RecordStream::Found::kGarbage:
                return connection.socket->abort();
        }
    }
}

void LocalRequests::Part::Handle(int32 number, Connection* connection, const BMessage& record) {
    if (!connection->isOffered) {
        connection->isOffered = true;
        connection->request = record;
        connection->socket->write(RecordStream::Frame(BMessage(kTaken)));
    } else if (record.what == kGoOn && !connection->isTaken) {
        connection->isTaken = true;
        BMessage request = std::move(connection->request);
        request.what = what_;
        request.RemoveName(kNumber);
        request.AddInt32(kNumber, number);
        WindowServer::Deliver(target_, request);
    }
}

void LocalRequests::Part::Answer(int32 number, const BMessage& answer) {
    const auto found = connections_.find(number);
    if (found == connections_.end()) return;
    QLocalSocket* const socket = found->second.socket;
    socket->write(RecordStream::Frame(answer));
    socket->flush();  // the program may be about to end
    socket->disconnectFromServer();
}

// --- The server's side ---

LocalRequests::LocalRequests(const std::string& path, const BMessenger& target, uint32 what)
    : part_(std::make_unique<Part>(path, target, what)) {}

LocalRequests::~LocalRequests() = default;

bool LocalRequests::IsListening() const {
    return part_->IsListening();
}

void LocalRequests::Answer(int32 number, const BMessage& answer) {
    WindowServer::Queue([number, answer] {
        if (Part::current != nullptr) Part::current->Answer(number, answer);
    });
}

// --- The asker's side ---

namespace {

// The next record; `milliseconds`: -1 for as long as it takes.
bool Receive(QLocalSocket* socket, int milliseconds, BMessage* record) {
    QByteArray arrived = socket->readAll();
    for (;;) {
        switch (RecordStream::Take(&arrived, record)) {
            case RecordStream::Found::kRecord:
                return true;
            case RecordStream::Found::kGarbage:
                return false;
            default:
                if (!socket->waitForReadyRead(milliseconds)) return false;
                arrived += socket->readAll();
        }
    }
}

bool Send(QLocalSocket* socket, const BMessage& record, int milliseconds) {
    const QByteArray frame = RecordStream::Frame(record);
    if (frame.isEmpty() || socket->write(frame) != frame.size()) return false;
    while (socket->bytesToWrite() > 0)
        if (!socket->waitForBytesWritten(milliseconds)) return false;
    return true;
}

}  // namespace

bool LocalRequests::Ask(const std::string& path, const BMessage& request, bigtime_t patience,
                        BMessage* answer) {
    constexpr bigtime_t kPause = 50'000;
    constexpr int kAsLongAsItTakes = -1;
    const bigtime_t end = system_time() + patience;
    const auto left = [end] {
        return static_cast<int>(std::max<bigtime_t>(end - system_time(), 0) / 1000);
    };
    QLocalSocket socket;
    // A program announces that it listens a moment before it does.
    for (;;) {
        socket.connectToServer(QString::fromStdString(path));
        if (socket.waitForConnected(left())) break;
        if (left() == 0) return false;
        snooze(kPause);
    }
    BMessage word;
    return Send(&socket, request, left()) && Receive(&socket, left(), &word) &&
           word.what == kTaken && Send(&socket, BMessage(kGoOn), left()) &&
           Receive(&socket, kAsLongAsItTakes, answer);
}
