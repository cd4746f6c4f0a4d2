#!/usr/bin/env node
// proper-lockfile: by a directory that is made.
//
//   proper_lockfile_locks.js RETRIES_JSON DIR cycles COUNT
//   proper_lockfile_locks.js RETRIES_JSON DIR contend LOG HOLD_MS
"use strict";

const fs = require("fs");
const readline = require("readline");
const lockfile = require("proper-lockfile");

const [retries, directory, what, ...rest] = process.argv.slice(2);
const options = { retries: JSON.parse(retries) };

const now = () => process.hrtime.bigint();
const sleep = (msec) => new Promise((resolve) => setTimeout(resolve, msec));

function processorTime() {
  const { user, system } = process.cpuUsage();
  return (user + system) / 1e6;
}

async function printCycles(count) {
  const durations = [];
  for (let i = 0; i < count; ++i) {
    const begin = now();
    const release = await lockfile.lock(directory, options);
    await release();
    durations.push(now() - begin);
  }
  console.log(durations.join("\n"));
}

async function orders() {
  const lines = readline.createInterface({ input: process.stdin });
  for await (const line of lines) {
    lines.close();
    return line.split(" ").map(BigInt);
  }
  throw new Error("no orders");
}

async function contend(log, holdMsec) {
  const lines = fs.openSync(log, "w");
  console.log("ready " + processorTime());
  const [begin, end] = await orders();
  await sleep(Number(begin - now()) / 1e6);
  for (let wanted = now(); wanted < end; wanted = now()) {
    const release = await lockfile.lock(directory, options);
    const acquired = now();
    await sleep(holdMsec);
    const releasing = now();
    await release();
    fs.writeSync(lines, `${wanted} ${acquired} ${releasing} ${now()}\n`);
  }
  console.log("done " + processorTime());
}

(what === "cycles" ? printCycles(Number(rest[0])) : contend(rest[0], Number(rest[1]))).catch((error) => {
  console.error(error);
  process.exit(1);
});
