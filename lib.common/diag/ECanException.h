#pragma once

// Whether a call may report its failure by throwing TException. Any non-zero
// value allows it; without it the call returns its neutral value.
enum ECanException : int
{
    canExceptionNo = 0,
    canExceptionYes = 1,
};
