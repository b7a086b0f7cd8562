#pragma once

/// The groups of benchmarks; each prints its rows.
void BenchXml();
void BenchHttp();
void BenchRing();
void BenchObjects();
void BenchIntake();
void BenchSettings();
void BenchCameras();
void BenchDrivers();
void BenchSchedule();
void BenchParameters();
void BenchMotion();

/// What a child process of a benchmark does; returns its exit code.
int RingReaderProcess(int nArgs, char** ppArgs);
int IntakeProcess(int nArgs, char** ppArgs);
