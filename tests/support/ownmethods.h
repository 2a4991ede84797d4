#pragma once

#include <QMetaMethod>
#include <QStringList>

// The signals and slots that a class adds to its base, in the order of the metaobject.
inline QStringList ownMethods(const QMetaObject& meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(QString::fromLatin1(meta.method(i).methodSignature()));
    return methods;
}
