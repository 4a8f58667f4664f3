// Requests to the gateway. The token comes with the address, once, and stays with this tab.
import {byId} from './dom.js';

const place = 'kobd-token';

export const token = () => sessionStorage.getItem(place) ?? '';

// Takes the token out of "#token=...", a whole address, or the bare token. False: there is none in it.
export function takeToken(text) {
  const found = /(?:^|token=)([0-9a-f]{32})$/.exec(text.trim());
  if (found) sessionStorage.setItem(place, found[1]);
  return found !== null;
}

export class Refusal extends Error {
  constructor(problem) {
    super(problem.detail ?? 'It did not work.');
    this.problem = problem;
  }
}

async function problemOf(answer) {
  try { return await answer.json(); } catch { return {status: answer.status, detail: `The gateway answered ${answer.status}.`}; }
}

// The answer's JSON; throws a Refusal with the reason when the request is refused.
export async function ask(method, path, body) {
  const headers = {Authorization: `Bearer ${token()}`};
  if (body !== undefined) headers['Content-Type'] = 'application/json';
  let answer;
  try {
    answer = await fetch(path, {method, headers, body: body === undefined ? undefined : JSON.stringify(body)});
  } catch {
    throw new Refusal({status: 0, detail: 'kobd-web does not answer.'});
  }
  if (!answer.ok) throw new Refusal(await problemOf(answer));
  const data = answer.status === 204 ? null : await answer.json();
  if (data?.saved === false) byId('unsaved').textContent = `The last change was not saved: ${data.not_saved ?? 'see kobctl doctor'}`;
  else if (method !== 'GET' && /^\/api\/(objects|tables|undo)/.test(path)) byId('unsaved').textContent = '';
  return data;
}

// Asks `question` about a subject and gives the answer to `take`, unless another subject was asked for since. While a
// question about the subject is out, it is not asked again before its answer has come: changes that come faster than
// answers do not keep them from being shown.
export function newest(question, take) {
  const out = new Map();  // by subject: the question that is out
  let wanted;
  async function run(subject, one) {
    try {
      while (one.again && subject === wanted) {
        one.again = false;
        const answer = await question(subject).catch((error) => { if (!one.again && subject === wanted) throw error; });
        if (answer !== undefined && subject === wanted) take(answer);
      }
    } finally {
      out.delete(subject);
    }
  }
  return (subject) => {
    wanted = subject;
    const known = out.get(subject);
    if (known) {
      known.again = true;
      return known.done;
    }
    const one = {again: true};
    out.set(subject, one);
    one.done = run(subject, one);
    return one.done;
  };
}

export const part = encodeURIComponent;
