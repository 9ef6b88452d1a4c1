// Window tests find widgets as a reader of the design names them: by objectName.
#pragma once

#include <gtest/gtest.h>

#include <QObject>
#include <QString>

template <class T>
T* Named(QObject* root, const char* name) {
    T* w = root->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
}
