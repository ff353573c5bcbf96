#pragma once

#include <QMetaMethod>
#include <QStringList>

// Signatures of the methods that the class itself declares, in their order. Qt spells qint64 as qlonglong.
inline QStringList ownMethods(const QMetaObject &meta, QMetaMethod::MethodType type) {
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type) {
            signatures += QString::fromLatin1(meta.method(i).methodSignature());
        }
    }
    return signatures;
}

inline QStringList ownSignals(const QMetaObject &meta) {
    return ownMethods(meta, QMetaMethod::Signal);
}

inline QStringList ownSlots(const QMetaObject &meta) {
    return ownMethods(meta, QMetaMethod::Slot);
}
