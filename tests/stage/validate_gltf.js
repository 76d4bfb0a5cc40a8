// Checks glTF files with the official validator: node validate_gltf.js FILE...
// Fails for errors and warnings; that a node is empty is none.
const fs = require('fs');
const validator = require('gltf-validator');

const kInformation = 2;

async function check(path) {
  const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(path)));
  const faults = report.issues.messages.filter((message) => message.severity < kInformation);
  for (const fault of faults) {
    console.error(`${path}: ${fault.code} ${fault.pointer || ''}: ${fault.message}`);
  }
  return faults.length === 0;
}

Promise.all(process.argv.slice(2).map(check)).then(
  (results) => process.exit(results.length > 0 && results.every(Boolean) ? 0 : 1),
  (error) => { console.error(error); process.exit(1); });
