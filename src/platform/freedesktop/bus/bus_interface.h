#pragma once

#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <variant>

namespace brevlin {

class BusObject;

/// Why a call was not carried out, under the name of the error.
struct BusRefusal
{
    QString name;
    QString text; ///< for people
};

/// The values that answer a call, or why it was refused.
using BusAnswer = std::variant<QVariantList, BusRefusal>;

/// One interface of an object on the session bus. Its description is what it holds callers to: a call whose
/// arguments have other types is refused before it arrives. Unlike Qt's adaptors it learns who asks for which
/// property.
class BusInterface : public QObject
{
    Q_OBJECT

public:
    /// `description` is the interface in the bus's introspection format.
    BusInterface(QString name, QString description, QObject* parent = nullptr);
    ~BusInterface() override;

    const QString& interfaceName() const { return m_name; }
    const QString& introspection() const { return m_description; }

    /// What answers a call of one of the methods, and one of the bus's own interface of properties.
    QDBusMessage reply(const QDBusMessage& message);
    QDBusMessage propertyReply(const QDBusMessage& message);
    /// The error for what is no call of the bus's interface of properties; else an invalid message.
    static QDBusMessage propertyRefusal(const QDBusMessage& message);

protected:
    virtual QVariantMap properties() const { return {}; }
    /// One property was asked for by its name.
    virtual void propertyAsked(const QString& /*name*/) {}
    /// The arguments have the types that stand in the description.
    virtual BusAnswer answer(const QString& method, const QVariantList& arguments) = 0;
    /// Nothing happens while no object has the interface.
    void emitSignal(const char* name, const QVariantList& arguments = {}) const;
    void emitPropertiesChanged(const QVariantMap& changed) const;

private:
    friend class BusObject;

    QString m_name;
    QString m_description;
    QPointer<BusObject> m_object;
    QHash<QString, QString> m_signatures; // of the methods' arguments; read with the first call
};

} // namespace brevlin
