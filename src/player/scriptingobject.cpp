#include "player/scriptingobject.h"

ScriptingObject::ScriptingObject(ScriptingConnectionPtr connection, RemoteObjectPtr object)
    : connection_(std::move(connection)), object_(std::move(object))
{
}

QString ScriptingObject::className() const
{
    return object_ ? objectClassName(object_->objectClass()) : QString();
}

bool ScriptingObject::isSameObject(const ScriptingObject &other) const
{
    return object_ && other.object_ && object_->isSameObject(*other.object_);
}

void ScriptingObject::reportFailure(const QString &operation, const BridgeError &error) const
{
    if (connection_ && connection_->delegate)
        connection_->delegate->eventDidFail(className(), operation, error);
}

QVariant ScriptingObject::value(Prop property) const
{
    return guarded(propertyName(property), QVariant(),
                   [&](RemoteObject &object) { return object.read(property); });
}

void ScriptingObject::setValue(Prop property, const QVariant &newValue) const
{
    QString name = propertyName(property);
    if (!name.isEmpty())
        name[0] = name[0].toUpper();
    guarded(QStringLiteral("set") + name, false, [&](RemoteObject &object) {
        object.write(property, newValue);
        return true;
    });
}

RemoteObjectPtr ScriptingObject::relatedObject(Prop relation) const
{
    return guarded(propertyName(relation), RemoteObjectPtr(),
                   [&](RemoteObject &object) { return object.object(relation); });
}

RemoteObjectList ScriptingObject::elementObjects(Prop list) const
{
    return guarded(propertyName(list), RemoteObjectList(),
                   [&](RemoteObject &object) { return object.elements(list); });
}

RemoteObjectPtr ScriptingObject::elementObjectAt(Prop list, qsizetype index) const
{
    return guarded(propertyName(list), RemoteObjectPtr(),
                   [&](RemoteObject &object) { return object.elementAt(list, index); });
}

RemoteObjectPtr ScriptingObject::resolvedObject() const
{
    return guarded(QStringLiteral("get"), RemoteObjectPtr(),
                   [&](RemoteObject &object) { return object.resolve(); });
}

void ScriptingObject::performCommand(Command command) const
{
    guarded(commandName(command), false, [&](RemoteObject &object) {
        object.perform(command);
        return true;
    });
}
