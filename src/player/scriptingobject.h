#pragma once

#include "player/fourcharcode.h"
#include "player/playerbackend.h"

#include <QDateTime>
#include <QImage>

class ScriptingObject;

// Told of every call to the player that failed. Each owner of a connection is its own
// delegate; a connection without one fails silently. The delegate must outlive the handles of
// its connection or be cleared first (setDelegate(nullptr)).
class ScriptingBridgeDelegate
{
public:
    virtual ~ScriptingBridgeDelegate() = default;
    // className is the class of the object called ("ITunesFileTrack"), operation the property
    // or command ("rating", "setRating", "playpause").
    virtual void eventDidFail(const QString &className, const QString &operation,
                              const BridgeError &withError) = 0;
};

// What handles of one connection share: the backend and the delegate. Calls have no timeout of
// their own: the library answers in process, and the MPRIS backend bounds each D-Bus call
// (MprisPlayer::setCallTimeout, 3 s unless set).
struct ScriptingConnection
{
    PlayerBackendPtr backend;
    ScriptingBridgeDelegate *delegate = nullptr;
};
using ScriptingConnectionPtr = std::shared_ptr<ScriptingConnection>;

// Base of all handle types: a cheap value holding a remote object and its connection. A null
// handle, and any call that fails, yields the empty value (empty text, 0, false, a null handle,
// an empty list); writes on them do nothing.
class ScriptingObject
{
public:
    ScriptingObject() = default;
    ScriptingObject(ScriptingConnectionPtr connection, RemoteObjectPtr object);

    bool isNull() const { return !object_; }
    explicit operator bool() const { return !isNull(); }

    const RemoteObjectPtr &remoteObject() const { return object_; }
    const ScriptingConnectionPtr &connection() const { return connection_; }

    // The class as the handle knows it: for an unresolved specifier the declared class, so a
    // kind test on it proves nothing. Make kind tests on what get() returned.
    template <class Handle>
    bool isKindOf() const
    {
        return object_ && objectClassIsKindOf(object_->objectClass(), Handle::kClass);
    }
    // The same object as another handle type, or a null handle if it is not of that kind.
    template <class Handle>
    Handle as() const
    {
        return isKindOf<Handle>() ? Handle(connection_, object_) : Handle();
    }
    QString className() const;

    bool isSameObject(const ScriptingObject &other) const;

protected:
    // The typed reads and writes of the handle types. Failures go to the delegate.
    QVariant value(Prop property) const;
    QString text(Prop property) const { return value(property).toString(); }
    qint64 integer(Prop property) const { return value(property).toLongLong(); }
    double real(Prop property) const { return value(property).toDouble(); }
    bool boolean(Prop property) const { return value(property).toBool(); }
    FourCharCode code(Prop property) const { return FourCharCode(value(property).toUInt()); }
    QDateTime date(Prop property) const { return value(property).toDateTime(); }
    void setValue(Prop property, const QVariant &newValue) const;

    RemoteObjectPtr relatedObject(Prop relation) const;
    RemoteObjectList elementObjects(Prop list) const;
    RemoteObjectPtr elementObjectAt(Prop list, qsizetype index) const;
    RemoteObjectPtr resolvedObject() const;
    void performCommand(Command command) const;

    template <class Handle>
    Handle wrap(const RemoteObjectPtr &object) const
    {
        return object ? Handle(connection_, object) : Handle();
    }
    template <class Handle>
    QList<Handle> wrapAll(const RemoteObjectList &objects) const
    {
        QList<Handle> handles;
        handles.reserve(objects.size());
        for (const RemoteObjectPtr &object : objects)
            if (object)
                handles.append(Handle(connection_, object));
        return handles;
    }

    // Runs a call on the remote object; on BridgeFailure tells the delegate and returns the
    // fallback.
    template <class Result, class Call>
    Result guarded(const QString &operation, Result fallback, Call call) const
    {
        if (!object_)
            return fallback;
        try {
            return call(*object_);
        } catch (const BridgeFailure &failure) {
            reportFailure(operation, failure.error());
            return fallback;
        }
    }
    void reportFailure(const QString &operation, const BridgeError &error) const;

    ScriptingConnectionPtr connection_;
    RemoteObjectPtr object_;
};
