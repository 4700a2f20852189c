#pragma once

struct ZVWorkerRequest;

// The task of /AnalyzeDevices: parameter 0 is the file of input variables in XMLPH form, which need not be there, 1 the result
// file. The result is an XMLPH form with the one key "Devices", which holds each device's XMLPH form as a length-prefixed text, so
// that they can be told apart whatever they hold. The devices are printed too.
bool RunDevicesTask(const ZVWorkerRequest& request);
