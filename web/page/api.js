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

// Asks `question` and gives the answer to `take`, but for an answer that comes after a newer question: what was asked
// for last is what is shown, in whatever order the answers come.
export function newest(question, take) {
  let last = 0;
  return async (...words) => {
    const mine = ++last;
    try {
      const answer = await question(...words);
      if (mine === last) take(answer, ...words);
    } catch (error) {
      if (mine === last) throw error;
    }
  };
}

export const part = encodeURIComponent;
