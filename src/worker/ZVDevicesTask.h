#pragma once

class ZVPropertyMap;
struct ZVWorkerRequest;

// The task of /AnalyzeDevices: parameter 0 is the file of input variables in XMLPH form, which need not be there. The result has the
// one key "Devices", which holds each device's XMLPH form as a length-prefixed text, so that they can be told apart whatever they
// hold. The devices are printed too.
bool RunDevicesTask(const ZVWorkerRequest& request, ZVPropertyMap& result);
