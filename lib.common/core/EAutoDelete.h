#pragma once

// Ownership argument of every container: with autoDeleteOn the container
// deletes its elements (by DeleteSelf) when they are cut, cleared, or when it
// ends.
enum EAutoDelete : int
{
    autoDeleteOff = 0,
    autoDeleteOn = 1,
};
