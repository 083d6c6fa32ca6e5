// SPDX-License-Identifier: MIT

#pragma once

/// What a request is about: the value of a key, its type word or its regular expression.
enum _RegEntryParam { REG_PARAM_VALUE = 0, REG_PARAM_TYPE, REG_PARAM_REGEXP };

/// Type of a registry value; what each admits is the registry's business.
enum _RegEntryType {
    REG_TYPE_STRING = 0,
    REG_TYPE_RC4,
    REG_TYPE_UUID,
    REG_TYPE_CHAR,
    REG_TYPE_IPV4,
    REG_TYPE_NUMBER,
    REG_TYPE_FLOAT,
    REG_TYPE_DATE,
    REG_TYPE_BOOL
};

/// Kind of an answer of `get`: a directory or a key (the map's key is its full name), a value, or
/// the default that stands in for a missing value (the map's key is the text itself).
enum _RegNodeType { REG_NODE_DIR = 0, REG_NODE_KEY, REG_NODE_VALUE, REG_NODE_DEFAULT };

/// Kind of a pending change.
enum _RegEntryChange {
    REG_CHANGE_MODIFIED = 0,
    REG_CHANGE_CREATED,
    REG_CHANGE_DELETED,
    REG_CHANGE_NOTHING
};
