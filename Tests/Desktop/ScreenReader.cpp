#include "Tests/Desktop/ScreenReader.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <fstream>

namespace fs = std::filesystem;

namespace {

const QString kBusService = QStringLiteral("org.a11y.Bus");
const QString kBusPath = QStringLiteral("/org/a11y/bus");
const QString kRegistryService = QStringLiteral("org.a11y.atspi.Registry");
const QString kRoot = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString kAccessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString kConnection = QStringLiteral("screen reader");
constexpr int kPatienceMilliseconds = 5000;

// Nothing on it but the test and the programs.
constexpr const char* kBusConfiguration = R"(<busconfig><type>session</type>
<listen>unix:path=%</listen><policy context="default"><allow send_destination="*"/>
<allow receive_sender="*"/><allow own="*"/></policy></busconfig>)";

}  // namespace

struct ScreenReader::Place {
    QString service;
    QString path;
};

// Says that there is a screen reader, and where; and hears of the programs.
class ScreenReader::Registry : public QDBusVirtualObject {
public:
    explicit Registry(QString address) : address_(std::move(address)) {}

    [[nodiscard]] const QStringList& Programs() const { return programs_; }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QString method = message.member();
        if (method == QLatin1String("GetAddress"))
            return connection.send(message.createReply(address_));
        // Whether it is enabled, and the like.
        if (method == QLatin1String("Get"))
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
        if (method != QLatin1String("Embed")) return false;
        programs_.append(message.service());
        QDBusArgument self;
        self.beginStructure();
        self << connection.baseService() << QDBusObjectPath(kRoot);
        self.endStructure();
        return connection.send(message.createReply(QVariant::fromValue(self)));
    }

private:
    const QString address_;
    QStringList programs_;
};

std::string ScreenReader::MissingProgram() {
    const char* const program = "dbus-daemon";
    const bool isThere = ChildProcess({"sh", "-c", std::string("command -v ") + program}, {})
                             .Wait(DesktopSession::kPatience) == ChildProcess::Ending{0, 0};
    return isThere ? "" : program;
}

ScreenReader::ScreenReader(DesktopSession* session) {
    const fs::path socket = session->Folder() / "bus";
    const fs::path configuration = session->Folder() / "bus.conf";
    std::string text = kBusConfiguration;
    text.replace(text.find('%'), 1, socket.string());
    std::ofstream(configuration) << text;
    const std::string address = "unix:path=" + socket.string();
    bus_ = session->Start(
        {"dbus-daemon", "--nofork", "--print-address", "--config-file=" + configuration.string()});
    const auto isThere = [&] { return session->Output().find(address) != std::string::npos; };
    if (!DesktopSession::WaitFor(isThere)) return;
    static int count = 1;
    static char name[] = "screen reader";
    static char* arguments[] = {name, nullptr};
    loop_ = std::make_unique<QCoreApplication>(count, arguments);
    connection_ = QDBusConnection::connectToBus(QString::fromStdString(address), kConnection);
    registry_ = std::make_unique<Registry>(QString::fromStdString(address));
    for (const QString& path : {kBusPath, kRoot})
        connection_.registerVirtualObject(path, registry_.get());
    isReady_ =
        connection_.registerService(kRegistryService) && connection_.registerService(kBusService);
    session->SetVariable("DBUS_SESSION_BUS_ADDRESS", address);
}

ScreenReader::~ScreenReader() {
    for (const QString& path : {kBusPath, kRoot})
        connection_.unregisterObject(path);
    // The last hold on it, while there is a loop that can end it.
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(kConnection);
}

bool ScreenReader::WaitFor(const std::function<bool()>& isRight) {
    return DesktopSession::WaitFor([&] {
        QCoreApplication::processEvents();
        return isRight();
    });
}

std::vector<ScreenReader::Thing> ScreenReader::Look() {
    std::vector<Thing> things;
    QCoreApplication::processEvents();
    for (const QString& program : registry_->Programs())
        for (const Place& window : ChildrenOf({program, kRoot}))
            Add(window, Property(window, QStringLiteral("Name")), &things);
    return things;
}

ScreenReader::Thing ScreenReader::Find(const std::string& role, const std::string& name) {
    Thing found;
    static_cast<void>(WaitFor([&] {
        for (const Thing& thing : Look()) {
            if (thing.role != role || !thing.name.starts_with(name)) continue;
            found = thing;
            return true;
        }
        return false;
    }));
    return found;
}

// Nothing where the place cannot say.
QVariant ScreenReader::Ask(const Place& place, const QString& of, const QString& method,
                           const QList<QVariant>& arguments) const {
    QDBusMessage question = QDBusMessage::createMethodCall(place.service, place.path, of, method);
    question.setArguments(arguments);
    const QDBusMessage answer = connection_.call(question, QDBus::Block, kPatienceMilliseconds);
    const bool isAnswer = answer.type() == QDBusMessage::ReplyMessage;
    return isAnswer ? answer.arguments().value(0) : QVariant();
}

std::string ScreenReader::Property(const Place& place, const QString& name) const {
    const QVariant answer = Ask(place, QStringLiteral("org.freedesktop.DBus.Properties"),
                                QStringLiteral("Get"), {kAccessible, name});
    return answer.value<QDBusVariant>().variant().toString().toStdString();
}

std::vector<ScreenReader::Place> ScreenReader::ChildrenOf(const Place& place) const {
    std::vector<Place> children;
    const QVariant answer = Ask(place, kAccessible, QStringLiteral("GetChildren"));
    if (!answer.canConvert<QDBusArgument>()) return children;
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        children.push_back({service, path.path()});
    }
    list.endArray();
    return children;
}

QRect ScreenReader::FrameOf(const Place& place) const {
    const QVariant extents =
        Ask(place, QStringLiteral("org.a11y.atspi.Component"), QStringLiteral("GetExtents"), {0u});
    if (!extents.canConvert<QDBusArgument>()) return {};
    const auto frame = extents.value<QDBusArgument>();
    int x = 0, y = 0, width = 0, height = 0;
    frame.beginStructure();
    frame >> x >> y >> width >> height;
    frame.endStructure();
    return {x, y, width, height};
}

void ScreenReader::Add(const Place& place, const std::string& window,
                       std::vector<Thing>* things) const {
    Thing thing;
    thing.role = Ask(place, kAccessible, QStringLiteral("GetRoleName")).toString().toStdString();
    thing.name = Property(place, QStringLiteral("Name"));
    thing.window = window;
    const bool isLine = thing.role == "text";
    if (isLine)
        thing.text =
            Ask(place, QStringLiteral("org.a11y.atspi.Text"), QStringLiteral("GetText"), {0, -1})
                .toString()
                .toStdString();
    // There are hundreds of menu items and the like, which nobody asks about.
    if (isLine || thing.role == "label" || thing.role == "combo box") {
        thing.description = Property(place, QStringLiteral("Description"));
        thing.frame = FrameOf(place);
    }
    things->push_back(thing);
    for (const Place& child : ChildrenOf(place))
        Add(child, window, things);
}
